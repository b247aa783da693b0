#include "compositions/maths/Noise.h"

#include <array>
#include <bit>
#include <cmath>

namespace tarnwell::compositions {

namespace {

// A mixing function of the multiply-and-shift family: every input bit reaches every output bit.
quint64 mix(quint64 x)
{
    x += 0x9e3779b97f4a7c15ULL;
    x = (x ^ (x >> 30)) * 0xbf58476d1ce4e5b9ULL;
    x = (x ^ (x >> 27)) * 0x94d049bb133111ebULL;
    return x ^ (x >> 31);
}

double fade(double t)
{
    return t * t * t * (t * (t * 6.0 - 15.0) + 10.0);
}

double between(double a, double b, double t)
{
    return a + (b - a) * t;
}

/// The slope that the lattice point has, applied to the way from there.
double slope(qint64 x, qint64 y, qint64 z, quint64 seed, double dx, double dy, double dz)
{
    const quint64 hash = mix(mix(mix(seed ^ quint64(x)) ^ quint64(y)) ^ quint64(z));
    // The twelve edges of a cube, four of them twice, so that no direction is favoured.
    const double u = (hash & 8) == 0 ? dx : dy;
    const double v = (hash & 12) == 0 ? dy : ((hash & 13) == 12 ? dx : dz);
    return ((hash & 1) != 0 ? -u : u) + ((hash & 2) != 0 ? -v : v);
}

} // namespace

double hashToUnit(quint64 seed, quint64 number)
{
    return double(mix(mix(seed) ^ number) >> 11) * 0x1.0p-53;
}

double hashToUnit(quint64 seed, double number)
{
    return hashToUnit(seed, std::bit_cast<quint64>(number == 0.0 ? 0.0 : number));
}

double gradientNoise(double x, double y, double z, quint64 seed)
{
    constexpr double farthest = 1e15;
    if (!(std::abs(x) < farthest && std::abs(y) < farthest && std::abs(z) < farthest)) {
        return 0.0;
    }
    const std::array cell{std::floor(x), std::floor(y), std::floor(z)};
    const double dx = x - cell[0];
    const double dy = y - cell[1];
    const double dz = z - cell[2];
    const auto corner = [&](int i, int j, int k) {
        return slope(qint64(cell[0]) + i, qint64(cell[1]) + j, qint64(cell[2]) + k, seed, dx - i,
                     dy - j, dz - k);
    };
    const double u = fade(dx);
    const double v = fade(dy);
    const double w = fade(dz);
    const double front = between(between(corner(0, 0, 0), corner(1, 0, 0), u),
                                 between(corner(0, 1, 0), corner(1, 1, 0), u), v);
    const double back = between(between(corner(0, 0, 1), corner(1, 0, 1), u),
                                between(corner(0, 1, 1), corner(1, 1, 1), u), v);
    return between(front, back, w);
}

} // namespace tarnwell::compositions
