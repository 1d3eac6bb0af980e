// MouseCursorID: the pointer shapes a widget can ask for.
#pragma once

enum MouseCursorID : int {
    CursorDefault = 0,
    CursorHand = 2,
    CursorWait = 4,
    CursorResizeHorz = 6,
    CursorResizeVert = 7,
    CursorIBeam = 10,
    CursorForbidden = 14,
    CursorArrow = 16,
    CursorCross = 20,
    CursorMove = 21,
    // A row that can be dragged to another place.
    CursorDragRow = 23,
};
