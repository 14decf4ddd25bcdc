#include "cli/picturefiles.h"

#include "cli/failure.h"

#include <boost/filesystem.hpp>

#include <algorithm>
#include <cctype>
#include <tuple>

namespace cli {

namespace {

namespace fs = boost::filesystem;

// What a pattern's last part consists of: "frame-", "%04d" or "*", ".png".
struct Pattern
{
    fs::path folder;
    std::string before, place, behind;
};

// No place if the text is no pattern.
Pattern cut(const std::string& pattern)
{
    const fs::path path(pattern);
    const std::string name = path.filename().string();
    const std::size_t from = name.find_first_of("%*");
    if (from == std::string::npos)
        return {};
    std::size_t to = from;
    if (name[from] == '%') {
        to = name.find_first_not_of("0123456789", from + 1);
        constexpr std::size_t mostDigits = 3; // a zero and the width
        if (to == std::string::npos || name[to] != 'd' || to - from - 1 > mostDigits)
            return {};
    }
    if (name.find_first_of("%*", to + 1) != std::string::npos)
        return {};
    return {path.parent_path(), name.substr(0, from), name.substr(from, to + 1 - from), name.substr(to + 1)};
}

std::vector<std::string> namesIn(const fs::path& folder)
{
    boost::system::error_code error;
    std::vector<std::string> names;
    for (fs::directory_iterator entry(folder.empty() ? "." : folder, error), end; !error && entry != end;
         entry.increment(error))
        if (boost::system::error_code ignored; fs::is_regular_file(entry->status(ignored)))
            names.push_back(entry->path().filename().string());
    if (error)
        throw Failure("cannot read the folder " + folder.string() + ": " + error.message());
    std::sort(names.begin(), names.end());
    return names;
}

} // namespace

bool hasPictureEnding(const std::string& path)
{
    static const std::vector<std::string> endings = {".bmp", ".jpeg", ".jpg", ".pbm",  ".pgm", ".png",
                                                     ".pnm", ".ppm",  ".tif", ".tiff", ".webp"};
    std::string ending = fs::path(path).extension().string();
    for (char& c : ending)
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return std::binary_search(endings.begin(), endings.end(), ending);
}

std::vector<std::string> picturesInFolder(const std::string& folder)
{
    std::vector<std::string> files;
    for (const std::string& name : namesIn(folder))
        if (hasPictureEnding(name))
            files.push_back((fs::path(folder) / name).string());
    if (files.empty())
        throw Failure("the folder \"" + folder + "\" holds no pictures; feed one with .png or .jpg files");
    return files;
}

bool isPicturePattern(const std::string& path)
{
    return !cut(path).place.empty();
}

std::vector<std::string> picturesOfPattern(const std::string& pattern)
{
    const Pattern parts = cut(pattern);
    const std::size_t around = parts.before.size() + parts.behind.size();
    const auto numbered = parts.place != "*";

    std::vector<std::tuple<std::size_t, std::string, std::string>> found; // digits, what varies, file
    for (const std::string& name : namesIn(parts.folder)) {
        if (name.size() < around || name.compare(0, parts.before.size(), parts.before) != 0 ||
            name.compare(name.size() - parts.behind.size(), parts.behind.size(), parts.behind) != 0)
            continue;
        std::string middle = name.substr(parts.before.size(), name.size() - around);
        if (numbered) {
            if (middle.empty() || !std::all_of(middle.begin(), middle.end(),
                                               [](unsigned char c) { return std::isdigit(c) != 0; }))
                continue;
            middle.erase(0, middle.find_first_not_of('0'));
        }
        found.emplace_back(numbered ? middle.size() : 0, middle, (parts.folder / name).string());
    }
    std::sort(found.begin(), found.end());

    std::vector<std::string> files;
    for (const auto& entry : found)
        files.push_back(std::get<2>(entry));
    if (files.empty())
        throw Failure("no picture fits \"" + pattern + "\"; check the folder and the numbers' digits");
    return files;
}

std::string pictureOfNumber(const std::string& pattern, unsigned long long number)
{
    const Pattern parts = cut(pattern);
    std::string digits = std::to_string(number);
    const std::string width = parts.place.substr(1, parts.place.size() - 2);
    const std::size_t least = width.empty() ? 1 : static_cast<std::size_t>(std::stoi(width));
    if (digits.size() < least)
        digits.insert(0, least - digits.size(), width[0] == '0' ? '0' : ' ');
    return (parts.folder / (parts.before + digits + parts.behind)).string();
}

} // namespace cli
