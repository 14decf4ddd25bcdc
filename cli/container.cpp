#include "cli/container.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <fstream>

namespace cli {

namespace {

using Header = std::array<unsigned char, 16>;

std::uint64_t bigEndian(const Header& bytes, std::size_t from, std::size_t count)
{
    std::uint64_t value = 0;
    for (std::size_t i = 0; i < count; ++i)
        value = value << 8 | bytes[from + i];
    return value;
}

bool isNamed(const Header& bytes, std::size_t from, const char* name)
{
    return std::memcmp(bytes.data() + from, name, 4) == 0;
}

// The bytes of an AVI's chunk with its head: a name, then the size of the rest, low byte first.
std::uint64_t chunkSize(const Header& head)
{
    return 8 + (head[4] | head[5] << 8 | head[6] << 16 | std::uint64_t(head[7]) << 24);
}

// The bytes of an MP4's box: the size of all, then a name; 1 stands for a longer size behind the name,
// 0 for "up to the end".
std::uint64_t boxSize(const Header& head, std::uint64_t rest)
{
    const std::uint64_t size = bigEndian(head, 0, 4);
    return size == 0 ? rest : size == 1 ? bigEndian(head, 8, 8) : size;
}

} // namespace

std::uint64_t missingBytes(const std::string& path)
{
    std::ifstream file(path, std::ios::binary | std::ios::ate);
    const auto size = static_cast<std::uint64_t>(std::max<std::streamoff>(0, file.tellg()));

    // Both formats are a row of pieces that each say how long they are: the last one must end in the file.
    bool avi = false;
    for (std::uint64_t at = 0; at + 8 <= size;) {
        Header head = {};
        file.clear();
        file.seekg(static_cast<std::streamoff>(at));
        file.read(reinterpret_cast<char*>(head.data()), head.size());
        if (at == 0)
            avi = isNamed(head, 0, "RIFF");
        if (avi ? !isNamed(head, 0, "RIFF") : at == 0 && !isNamed(head, 4, "ftyp"))
            return 0;
        const std::uint64_t length = avi ? chunkSize(head) : boxSize(head, size - at);
        if (length > size - at)
            return length - (size - at);
        if (length < 8)
            return 0;
        at += length + (avi ? length % 2 : 0);
    }
    return 0;
}

} // namespace cli
