#include "tests/life/Growth.h"

#include <cmath>

Growth GrowthOf(const std::vector<double>& samples)
{
    const auto count = static_cast<double>(samples.size());
    const double middle = (count - 1) / 2;
    double sum = 0;
    for (const double sample : samples)
        sum += sample;
    const double mean = sum / count;

    double together = 0;
    double squares = 0;
    for (std::size_t i = 0; i < samples.size(); ++i)
    {
        const double place = static_cast<double>(i) - middle;
        together += place * (samples[i] - mean);
        squares += place * place;
    }
    Growth growth;
    growth.perSample = together / squares;
    growth.inAll = growth.perSample * (count - 1);

    double off = 0;
    for (std::size_t i = 0; i < samples.size(); ++i)
    {
        const double line = mean + growth.perSample * (static_cast<double>(i) - middle);
        off += (samples[i] - line) * (samples[i] - line);
    }
    growth.noise = std::sqrt(off / count);
    return growth;
}

bool IsFlat(const Growth& growth, double kept)
{
    return growth.inAll <= kept + 2 * growth.noise;
}
