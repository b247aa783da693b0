#pragma once

#include <QtGlobal>

namespace tarnwell::compositions {

/// A number from 0 up to but not including 1 that two numbers decide: the same ones give the same
/// result on every machine and in every run, and neighbours give unrelated ones.
double hashToUnit(quint64 seed, quint64 number);
/// The same for a time or any other number that need not be whole.
double hashToUnit(quint64 seed, double number);

/// Smooth noise in space from -1 to 1, 0 where all three coordinates are whole numbers.
double gradientNoise(double x, double y, double z, quint64 seed = 0);

} // namespace tarnwell::compositions
