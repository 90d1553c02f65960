#pragma once

#include <cstddef>
#include <vector>

// The straight line that comes closest to samples taken after equally many rounds each, by least squares.
struct Growth
{
    double perSample = 0;
    double inAll = 0;    // along the line, from the first sample to the last
    double noise = 0;    // how far the samples lie from the line: the root of the mean square
};

Growth GrowthOf(const std::vector<double>& samples);    // at least two

// Whether nothing grows: what comes and goes by chance, and `kept`, which the system makes when it is first
// needed and keeps, leave no room for what each round leaves behind.
bool IsFlat(const Growth& growth, double kept);
