#!/usr/bin/env python3
"""Reads memcheck XML reports; fails on errors or definite leaks of our code.

An error counts as ours when a frame of its stack lies in one of the
project's libraries or test programs. Two allocations are kept on purpose
and are named, not counted: the ray query every pick leaves alive, and the
physics stepping timer that outlives its thread object.
"""
import sys
import xml.etree.ElementTree as ElementTree

OUR_OBJECTS = ("librender_widget", "libscene_view", "librender_engine", "libworld_model",
               "libku_framework", "libmk_math", "_test")
DELIBERATE = {
    "VX::NextGenView::Selection::pick": "the ray query each pick leaves alive",
    "VX::NextGenView::PhysicThread::PhysicThread": "the stepping timer that outlives its thread",
}


def frames(error):
    for frame in error.iter("frame"):
        yield frame.findtext("obj", ""), frame.findtext("fn", "")


def main(paths):
    ours, deliberate, foreign = [], {}, 0
    for path in paths:
        root = ElementTree.parse(path).getroot()
        for error in root.iter("error"):
            kind = error.findtext("kind", "")
            stack = list(frames(error))
            reason = next((why for _, fn in stack for name, why in DELIBERATE.items() if fn.startswith(name)), None)
            if reason:
                deliberate[reason] = deliberate.get(reason, 0) + 1
            elif any(name in obj for obj, _ in stack for name in OUR_OBJECTS):
                what = error.findtext("what") or error.findtext("xwhat/text", "")
                ours.append(f"{path}: {kind}: {what}\n    " + "\n    ".join(fn for _, fn in stack[:12]))
            else:
                foreign += 1
    for reason, count in deliberate.items():
        print(f"memcheck: kept on purpose: {reason} ({count} report(s))")
    print(f"memcheck: {foreign} report(s) inside third-party code only (Mesa, Qt, X, OGRE)")
    if ours:
        print(f"memcheck: {len(ours)} error(s) in our code:")
        print("\n".join(ours))
        return 1
    print("memcheck: no error and no definite leak in our code")
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
