# Qt, as the platform layer and the program use it.
find_package(Qt6 6.4 REQUIRED COMPONENTS Core Gui Qml Quick Network DBus Widgets)
set(CMAKE_AUTOMOC ON)
set(CMAKE_AUTORCC ON)
add_compile_definitions(QT_NO_KEYWORDS QT_NO_CAST_FROM_ASCII)
