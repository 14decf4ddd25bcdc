#pragma once

#include "corvale/filter/filter.h"
#include "corvale/filter/memorymanager.h"
#include "corvale/filters/builtinfilters.h"
#include "corvale/filters/values.h"
#include "corvale/runtime/stringhash.h"
#include "support/logcapture.h"

#include <gtest/gtest.h>
#include <opencv2/core/utility.hpp>

#include <map>
#include <string>
#include <vector>

namespace support {

using ZR::Corvale::Data;
using ZR::Corvale::DataType;
using ZR::Corvale::Filters::Values;

/// A value, for lists of inputs.
template <typename Content>
boost::shared_ptr<Data> value(const Content& content)
{
    return boost::make_shared<Data>(content);
}

// OpenCV's own threads are no part of what is tested, and ThreadSanitizer can not see into them.
inline const bool openCvRunsOnOneThread = (cv::setNumThreads(1), true);

/// Runs the built-in filters directly, without a node around them, and keeps what they log.
class FilterRunner
{
public:
    FilterRunner()
    {
        for (const auto& filter : ZR::Corvale::Filters::makeBuiltinFilters()) {
            filter->bindMemoryManager(&memory);
            filters[filter->getName()] = filter;
        }
    }

    Values operator()(const std::string& filter, const Values& inputs, const std::string& process = "process",
                      const std::string& scope = "scope")
    {
        const ZR::Corvale::StringHash processHash(process), scopeHash(scope);
        Values own = inputs;
        return consumes ? filters.at(filter)->consume(own, processHash, scopeHash, 0)
                        : filters.at(filter)->applyFilter(inputs, processHash, scopeHash, 0);
    }

    /// The one value that comes out.
    boost::shared_ptr<Data> only(const std::string& filter, const Values& inputs)
    {
        const Values outputs = (*this)(filter, inputs);
        EXPECT_EQ(outputs.size(), 1u) << filter;
        return outputs.at(0);
    }

    /// Whether nothing comes out and the error line of the filter is all that is logged, which is then
    /// dropped.
    bool refuses(const std::string& filter, const Values& inputs)
    {
        const bool nothing = (*this)(filter, inputs).empty();
        const auto lines = log.messages();
        log.clear();
        return nothing && lines == std::vector<std::string>{" [Invalid Input] -> " + filter + " -> ..."};
    }

    bool consumes = false; // the filter may take its inputs
    LogCapture log;
    ZR::Corvale::MemoryManager memory;
    std::map<std::string, boost::shared_ptr<ZR::Corvale::Filter>> filters;
};

} // namespace support
