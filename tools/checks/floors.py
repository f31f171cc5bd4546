"""Nothing points upwards: each floor includes only what stands below it."""

import re

# The first rule whose pattern matches a file's path says what its includes may not match, and what may after all.
QT_OR_X11 = r"Q[A-Za-z]+$|Qt[A-Z]\w*/|xcb/|X11/|xkbcommon/"
RULES = (
    (r"BrimquillCore/", rf"Platform/|Brimquill/|{QT_OR_X11}", None),
    (r"Platform/[^/]+\.(h|cpp)$", rf"Brimquill/|{QT_OR_X11}|Platform/(X11|Desktop|Headless|Helpers)/", None),
    (r"Platform/Headless/", rf"Brimquill/|{QT_OR_X11}|Platform/(X11|Desktop|Helpers)/", None),
    (r"Platform/X11/", r"Brimquill/|Platform/(Headless|Helpers)/", None),
    (r"Platform/Helpers/", r"Brimquill/|xcb/|X11/|xkbcommon/|Platform/(X11|Headless)/", None),
    (r"Platform/", r"Brimquill/|xcb/|X11/|xkbcommon/|Platform/Headless/", None),
    (r"Brimquill/", r"xcb/|X11/|xkbcommon/|Platform/(X11|Desktop|Headless|Helpers)/|tests/", None),
    (r"tests/core/", rf"Platform/|Brimquill/|{QT_OR_X11}", None),
    (r"tests/app/", r"xcb/|X11/|xkbcommon/|Platform/(X11|Desktop)/", None),
)
# The one place that knows every backend, and the desktop of which too little is known for a clipboard other than one in memory.
FACTORY = re.compile(r"Platform/(Factory\.cpp|Desktop/LimitedDesktop\.h)$")


def run(tree):
    findings = []
    for path in tree.select(".h", ".cpp"):
        rule = next((rule for rule in RULES if re.match(rule[0], path)), None)
        if rule is None or FACTORY.match(path):
            continue
        findings += [f"{path}:{number}: includes {name}, which is not below it"
                     for number, name, _ in tree.includes(path) if re.match(rule[1], name)]
    return findings
