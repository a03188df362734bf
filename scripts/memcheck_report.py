#!/usr/bin/env python3
"""Reads memcheck XML reports; fails on errors or definite leaks of our code.

A report is ours when, walking up its stack from the allocation or the
faulting access, the first named frame that is neither an allocator nor Qt
(which allocates on its callers' behalf) belongs to the project (namespaces
VX::, ku::, MK::). Anything else (Mesa, OGRE, X, the dynamic loader) is
counted as third-party. Allocations kept on purpose are named, not counted.
"""
import sys
import xml.etree.ElementTree as ElementTree

OURS = ("VX::", "ku::", "MK::")
PASS_THROUGH = ("malloc", "calloc", "realloc", "strdup", "operator new", "Q", "qMalloc", "qRealloc")
DELIBERATE = {
    "VX::NextGenView::Selection::pick": "the ray query each pick leaves alive",
    "VX::NextGenView::PhysicThread::PhysicThread": "the stepping timer that outlives its thread",
    "VX::NextGenView::Camera::createActions": "the viewpoint menu, made without a parent and never deleted by the camera",
}


def errors_of(path):
    """Every <error> of a report, also those valgrind writes after the
    document's end while the process exits."""
    text = open(path, encoding="utf-8", errors="replace").read()
    for block in text.split("<error>")[1:]:
        yield ElementTree.fromstring("<error>" + block.split("</error>")[0] + "</error>")


def origin(error):
    """The first frame, from the allocation up, that decides whose it is."""
    stack = error.find("stack")
    for frame in (stack.iter("frame") if stack is not None else []):
        fn = frame.findtext("fn", "")
        if not fn or fn.startswith(PASS_THROUGH):
            continue
        return fn
    return ""


def main(paths):
    ours, deliberate, foreign = [], {}, 0
    for path in paths:
        for error in errors_of(path):
            fn = origin(error)
            reason = next((why for name, why in DELIBERATE.items() if fn.startswith(name)), None)
            if reason:
                deliberate[reason] = deliberate.get(reason, 0) + 1
            elif fn.startswith(OURS):
                what = error.findtext("what") or error.findtext("xwhat/text", "")
                ours.append(f"{path}: {error.findtext('kind', '')}: {what} (from {fn})")
            else:
                foreign += 1
    for reason, count in deliberate.items():
        print(f"memcheck: kept on purpose: {reason} ({count} report(s))")
    print(f"memcheck: {foreign} report(s) from third-party code (Mesa, OGRE, X, the loader)")
    if ours:
        print(f"memcheck: {len(ours)} error(s) in our code:")
        print("\n".join(ours))
        return 1
    print("memcheck: no error and no definite leak in our code")
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
