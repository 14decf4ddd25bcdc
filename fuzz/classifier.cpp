// A classifier's database, up to the first zero byte, and queries of several lengths made of the bytes behind
// it.

#include "corvale/filters/knnclassification.h"
#include "fuzz/values.h"

#include <boost/property_tree/exceptions.hpp>

#include <sys/mman.h>
#include <unistd.h>

using namespace fuzz;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const int file = memfd_create("database", 0);
    const auto length = std::find(data, data + size, 0) - data;
    assert(ftruncate(file, 0) == 0 && pwrite(file, data, length, 0) == length);
    Bytes bytes(data + length, size - length);
    try {
        Filters::KNNClassification classifier("/proc/self/fd/" + std::to_string(file));
        const StringHash hash("process");
        for (Values query; query.size() < 6; query.push_back(anything(bytes)))
            classifier.applyFilter({boost::make_shared<Data>(query), anything(bytes)}, hash, hash, 0);
    } catch (const boost::property_tree::ptree_error&) { // the text is no database
    }
    return 0;
}
