#pragma once

#include <cstddef>
#include <map>
#include <vector>

// The blocks of memory that the system leaves behind each time it makes and destroys a dialog of a template,
// without any code of the product: Wine's static controls of version 6 leave one each.
class SystemResidue
{
public:
    // Measures these templates. No other thread may run meanwhile.
    explicit SystemResidue(const std::vector<int>& templates);

    std::size_t Of(const std::vector<int>& shown) const;    // of one showing each

private:
    std::map<int, std::size_t> blocks;
};
