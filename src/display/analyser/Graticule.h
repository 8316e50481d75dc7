// Ground, grid and labels of a frame.
#pragma once

#include "display/analyser/FramePlan.h"
#include "display/canvas/Canvas.h"

namespace quorl {

// Columns and rows at fixed shares of the picture; in the level view on round frequencies and levels. The
// canvas has the frame's scale.
void DrawGraticule(Canvas& canvas, const FramePlan& plan);
// What the lines stand for, over all that is drawn. Labels that would meet others or an edge are left away.
void DrawGraticuleLabels(Canvas& canvas, const FramePlan& plan);

}  // namespace quorl
