#pragma once

#include <fstream>
#include <iterator>
#include <string>

/// A file of the folder with what the tests expect; empty if there is none.
inline std::string expectedText(const std::string& name)
{
    std::ifstream file(EXPECTED_TEXTS + name);
    return std::string(std::istreambuf_iterator<char>(file), {});
}
