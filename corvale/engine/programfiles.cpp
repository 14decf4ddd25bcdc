// Program files and plug-ins.

#include "corvale/data/data.h"
#include "corvale/engine/corvale_p.h"
#include "rk/log.h"
#include "rk/os.h"
#include "rk/unicode.h"

#include <boost/filesystem/operations.hpp>
#include <boost/filesystem/path.hpp>
#include <boost/thread/lock_guard.hpp>

#include <dlfcn.h>

#include <array>
#include <cstdio>
#include <memory>
#include <sstream>

namespace ZR::Corvale {

namespace {

const std::string category = rk::log::addCategory("corvale.private");

bool isOneOf(const std::string& text, const std::vector<std::string>& choices)
{
    for (const std::string& choice : choices)
        if (text == choice)
            return true;
    return false;
}

// A path as a log line shows it inside quotes of its own: the stream adds a second pair.
std::string shown(const boost::filesystem::path& path)
{
    std::ostringstream text;
    text << path;
    return text.str();
}

bool fail(const std::string& path, const std::string& text)
{
    rk::log::log(rk::log::Error, category, "loadProgramFromFile(\"" + path + "\"): " + text, __FILE__,
                 "loadProgramFromFile", __LINE__);
    return false;
}

bool fail(const boost::filesystem::path& path, const std::string& text)
{
    return fail(shown(path), text);
}

struct FileCloser
{
    void operator()(std::FILE* file) const { std::fclose(file); }
};

// Reads by pieces as `fgets` gives them, each ending at its first zero byte.
std::string readText(std::FILE* file)
{
    std::string text;
    std::array<char, 512> piece;
    while (std::fgets(piece.data(), static_cast<int>(piece.size()), file))
        text += piece.data();
    return text;
}

} // namespace

bool CorvalePrivate::loadProgram(const std::string& program, void* handle, const std::string& basePath)
{
    return _parser.loadProgram(program, handle, basePath);
}

// A path is marked before it is opened: imports that go in a circle end, and a file that fails is not
// tried again.
bool CorvalePrivate::_markLoaded(const std::string& path)
{
    const boost::lock_guard guard(_loadedFilesMutex);
    return _loadedFiles.insert(path).second;
}

bool CorvalePrivate::_isLoaded(const std::string& path)
{
    const boost::lock_guard guard(_loadedFilesMutex);
    return _loadedFiles.count(path) != 0;
}

bool CorvalePrivate::loadProgramFromFile(const std::string& path, void* handle)
{
    namespace fs = boost::filesystem;
    try {
        const fs::path file(path, rk::unicodeFacet());
        boost::system::error_code error;
        const fs::file_type type = fs::status(file, error).type();
        if (type == fs::status_error || type == fs::file_not_found)
            return fail(file, "\"" + shown(file) + "\" not found.");
        if (type == fs::directory_file)
            return fail(file, "\"" + shown(file) + "\" is a directory.");
        if (type != fs::regular_file)
            return fail(file, "\"" + shown(file) + "\" is not a regular file.");
        if (_isLoaded(path))
            return true;
        const std::string extension = file.extension().string(rk::unicodeFacet());
        if (isOneOf(extension, {".fgs", ".FGS", ".txt", ".TXT"}))
            return _loadProgramFile(path, handle);
        if (isOneOf(extension, {".so", ".dylib"}))
            return _loadPlugin(path, handle);
        return fail(file, "invalid file format.");
    } catch (...) {
        return fail(path, "impossible to perform loading.");
    }
}

bool CorvalePrivate::_loadProgramFile(const std::string& path, void* handle)
{
    if (!_markLoaded(path))
        return true;
    const boost::filesystem::path file(path, rk::unicodeFacet());
    std::unique_ptr<std::FILE, FileCloser> stream(rk::os::fopen(path, "r"));
    if (!stream)
        return fail(file, "\"unable to open " + shown(file));
    const std::string program = readText(stream.get());
    stream.reset();
    return loadProgram(program, handle, file.parent_path().string(rk::unicodeFacet()));
}

// False also when all went well. The library is closed at once: a plug-in whose code must stay keeps
// itself in memory. It stays open when its entry throws, since the exception may be made of its code.
bool CorvalePrivate::_loadPlugin(const std::string& path, void* handle)
{
    if (!_markLoaded(path))
        return true;
    const boost::filesystem::path file(path, rk::unicodeFacet());
    void* const library = dlopen(path.c_str(), RTLD_LAZY);
    if (!library)
        return fail(file, "error when performing dynamic loading.");
    using Entry = void (*)(void*);
    if (const Entry entry = reinterpret_cast<Entry>(dlsym(library, "corvaleInit")))
        entry(handle);
    else
        fail(file, "corvaleInit(void* Corvale) not found in \"" + shown(file) + "\".");
    dlclose(library);
    return false;
}

} // namespace ZR::Corvale
