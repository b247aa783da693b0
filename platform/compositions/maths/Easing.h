#pragma once

#include <QtGlobal>

namespace tarnwell::compositions {

/// The course from 0 to 1 of the interpolation curves, by the number that files store: 0 linear,
/// then quadratic, cubic, exponential and sinusoidal, each as in, out and in-out.
double ease(qint64 curve, double x);

/// Where in its course from 0 to 1 something is that takes a duration: 0 stops at the end, 1 starts
/// over, 2 goes back and forth, 3 goes forth and back once. No duration means the end at once.
double repeated(qint64 repeat, double time, double duration);

} // namespace tarnwell::compositions
