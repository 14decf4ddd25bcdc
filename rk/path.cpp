#include "rk/path.h"

#include <boost/filesystem/operations.hpp>
#include <boost/filesystem/path.hpp>

#include <cstdlib>
#include <mutex>
#include <sstream>
#include <vector>

namespace rk::path {

namespace {

using boost::filesystem::path;

struct AddedPaths
{
    std::mutex mutex;
    std::vector<path> directories; // guarded by mutex
};

AddedPaths& added()
{
    static AddedPaths instance;
    return instance;
}

bool isThere(const path& file)
{
    boost::system::error_code unreadable;
    return boost::filesystem::exists(file, unreadable);
}

std::string variable(const char* name, const std::string& fallback)
{
    const char* value = std::getenv(name);
    return value && *value ? value : fallback;
}

// The base directories, the most important first.
std::vector<path> platformDirectories()
{
    const std::string home = variable("HOME", "");
    std::istringstream list(variable("XDG_DATA_HOME", home.empty() ? "" : home + "/.local/share") + ':' +
                            variable("XDG_DATA_DIRS", "/usr/local/share:/usr/share"));
    std::vector<path> directories;
    for (std::string directory; std::getline(list, directory, ':');)
        if (path(directory).is_absolute()) // others are invalid there and to be ignored
            directories.emplace_back(directory);
    return directories;
}

} // namespace

std::string findData(const std::string& application, const std::string& file)
{
    if (file.empty())
        return {};
    if (path(file).is_absolute())
        return isThere(file) ? file : std::string();

    std::vector<path> directories;
    {
        const std::lock_guard<std::mutex> lock(added().mutex);
        directories = added().directories;
    }
    for (path& directory : platformDirectories())
        directories.push_back(std::move(directory));
    for (const path& directory : directories) {
        const path candidate = directory / application / file;
        if (isThere(candidate))
            return candidate.string();
    }
    return {};
}

void addDataPath(const std::string& directory)
{
    const std::lock_guard<std::mutex> lock(added().mutex);
    added().directories.emplace_back(directory);
}

} // namespace rk::path
