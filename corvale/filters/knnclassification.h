#pragma once

#include "corvale/filter/filterprimitive.h"
#include "corvale/filters/values.h"

#include <cstddef>
#include <string>
#include <vector>

namespace ZR::Corvale::Filters {

/// Classifies a vector of numbers by its nearest neighbours in a labelled database, by Euclidean distance.
///
///     <data>
///       <properties><type>knn</type><size>2</size><count>3</count></properties>
///       <descriptors>
///         <d>7  0.5 1.5</d>                    the label, then `size` numbers; the tag may be any
///         ...
///       </descriptors>
///     </data>
///
/// | port | kind    | shape and unit                                                  | when missing |
/// | in   | Array   | `size` values, read as numbers; what is no number counts as 0   | no result    |
/// | k    | Integer | neighbours that vote, 1 if below 2; optional                    | 1            |
/// | out  | Integer | the label of the most votes, the least one of a tie             |              |
/// Of several equally near the first in the database is the nearest; when a nearer one drives out the
/// farthest of k, it is the first too that goes. Neighbours that are not there, because k is above the number
/// of descriptors, vote for 0.
/// Threads: thread-safe, keeps no state beside the database, which does not change. Failure: empty result,
/// without a word for an array of another length and for an empty database with k below 2, with one error
/// line for an array with a missing element.
class KNNClassification : public FilterPrimitive
{
public:
    /// Reads a database. One of another type than "knn" leaves the filter empty, with descriptors of size 0.
    /// Throws what `boost::property_tree` throws: for a file that cannot be read or parsed, a missing key, a
    /// malformed number; `ptree_bad_data` also for a wrong count and for a descriptor with too few numbers.
    explicit KNNClassification(const std::string& path);

    Values applyFilter(const Values& inputs, const StringHash& processHash, const StringHash& scopeHash,
                       long long depth) override;

private:
    bool _loadDataBase(const std::string& path);
    void _addDescriptor(const std::string& text);
    int _classify(const std::vector<float>& query, std::size_t k) const;

    unsigned int _descriptorSize = 0;
    unsigned int _descriptorCount = 0;
    std::vector<int> _labels;
    std::vector<float> _descriptors; // in blocks of several, whose elements of one index stand together
};

} // namespace ZR::Corvale::Filters
