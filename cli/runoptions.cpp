#include "cli/runoptions.h"

#include "cli/failure.h"

#include <boost/filesystem.hpp>

#include <set>

namespace cli {

std::pair<std::string, std::string> assignment(const std::string& text, const std::string& option)
{
    const std::size_t sign = text.find('=');
    if (sign == std::string::npos || sign == 0 || sign + 1 == text.size())
        throw Failure("\"" + text + "\" does not fit " + option + "; write NAME=PATH");
    return {text.substr(0, sign), text.substr(sign + 1)};
}

void requireDistinct(const RunOptions& options)
{
    std::set<std::string> sources;
    std::vector<std::string> inputs = {options.program};
    for (const std::string& feed : options.feeds) {
        const auto [source, path] = assignment(feed, "--feed");
        if (!sources.insert(source).second)
            throw Failure("the source \"" + source + "\" is fed twice; give it one feed");
        inputs.push_back(path);
    }
    std::set<std::string> paths;
    for (const std::string& save : options.saves) {
        const std::string path = assignment(save, "--save").second;
        if (!paths.insert(path).second)
            throw Failure("\"" + path + "\" is saved to twice; give each sink a file of its own");
        for (const std::string& input : inputs)
            if (boost::system::error_code error; boost::filesystem::equivalent(path, input, error))
                throw Failure("\"" + path + "\" is read by this run; save to another file");
    }
}

} // namespace cli
