# Qt, as the platform layer and the program use it.
find_package(Qt6 6.4 REQUIRED COMPONENTS Core Gui Qml Quick Network DBus Widgets Test)
set(CMAKE_AUTOMOC ON)
set(CMAKE_AUTORCC ON)
add_compile_definitions(QT_NO_KEYWORDS QT_NO_CAST_FROM_ASCII)
# Told that it reads C++20, moc of Qt 6.4 stumbles over the standard library's <concepts>.
set(CMAKE_AUTOMOC_COMPILER_PREDEFINES OFF)
