#include "corvale/filters/knnclassification.h"

#include "corvale/filters/inputguards.h"
#include "corvale/filters/vectorised.h"
#include "corvale/filters/xmldepth.h"
#include "corvale/runtime/port.h"
#include "rk/log.h"

#include <boost/property_tree/ptree.hpp>
#include <boost/property_tree/xml_parser.hpp>

#include <algorithm>
#include <cstdint>
#include <fstream>
#include <iterator>
#include <limits>
#include <locale>
#include <map>
#include <sstream>

namespace ZR::Corvale::Filters {

namespace {

const std::string category = rk::log::addCategory("corvale.filter.kNNClassification");
const InputGuards guards(category, "KNNClassification", {Guard::present(0)});

constexpr std::size_t deepestTree = 100; // levels; a database has 3

constexpr std::size_t blockSize = 32; // descriptors; their sums fit into the registers

// Squared distances between a query and the descriptors of a block; true if one is below `limit`. Each sum
// runs in the order of the elements, so it is the same in whatever company it is computed. As it never
// decreases, rounded or not, a block whose sums have all reached the limit is given up early, which spares
// reading it.
bool computeDistances(const float* query, std::size_t size, const float* block, float limit, float* distances)
{
    constexpr std::size_t Stage = 16; // elements from one look at the limit to the next
    float sums[blockSize] = {};
    int below = 1;
    for (std::size_t begin = 0; begin < size && below > 0; begin += Stage) {
        for (std::size_t element = begin; element < std::min(begin + Stage, size); ++element)
            for (std::size_t i = 0; i < blockSize; ++i) {
                const float difference = query[element] - block[element * blockSize + i];
                sums[i] += difference * difference;
            }
        below = 0;
        for (std::size_t i = 0; i < blockSize; ++i)
            below += sums[i] < limit;
    }
    std::copy(sums, sums + blockSize, distances);
    return below > 0;
}

// The nearest descriptors so far, each in a slot. The slot that gives way to a nearer one is the farthest, of
// several the first: it is the top of a heap, since a search through all slots would cost k for each.
class Neighbours
{
public:
    /// Empty slots hold this label; they are as far away as can be.
    Neighbours(std::size_t slots, int emptyLabel)
    {
        for (std::size_t number = 0; number < slots; ++number) // in the order of a heap
            _heap.push_back({std::numeric_limits<float>::max(), number, emptyLabel});
    }

    float farthest() const { return _heap.front().distance; }

    void offer(float distance, int label)
    {
        if (!(distance < _heap.front().distance))
            return;
        std::pop_heap(_heap.begin(), _heap.end(), staysLonger);
        _heap.back().distance = distance;
        _heap.back().label = label;
        std::push_heap(_heap.begin(), _heap.end(), staysLonger);
    }

    std::map<int, std::size_t> votes() const
    {
        std::map<int, std::size_t> votes;
        for (const Slot& slot : _heap)
            ++votes[slot.label];
        return votes;
    }

private:
    struct Slot
    {
        float distance;
        std::size_t number;
        int label;
    };

    static bool staysLonger(const Slot& left, const Slot& right)
    {
        return left.distance < right.distance ||
               (left.distance == right.distance && left.number > right.number);
    }

    std::vector<Slot> _heap;
};

boost::property_tree::ptree_bad_data badData(const std::string& text)
{
    return boost::property_tree::ptree_bad_data("classification database: " + text, text);
}

// Throws what reading the file itself would.
boost::property_tree::ptree readTree(const std::string& path)
{
    boost::property_tree::ptree tree;
    std::ifstream file(path);
    if (!file)
        boost::property_tree::read_xml(path, tree);
    const std::string text(std::istreambuf_iterator<char>(file), {});
    if (xmlDepth(text) > deepestTree)
        throw badData("elements nest more than " + std::to_string(deepestTree) + " levels deep");
    std::istringstream stream(text);
    try {
        boost::property_tree::read_xml(stream, tree);
    } catch (const boost::property_tree::xml_parser_error& error) { // of a stream, which has no name
        throw boost::property_tree::xml_parser_error(error.message(), path, error.line());
    }
    return tree;
}

} // namespace

KNNClassification::KNNClassification(const std::string& path) : FilterPrimitive("KNNClassification")
{
    accept(_addInput("in"), {DataType::Array});
    const boost::shared_ptr<Port> k = _addInput("k");
    accept(k, {DataType::Integer});
    k->setOptional(true);
    _addOutput("out");
    _loadDataBase(path);
}

bool KNNClassification::_loadDataBase(const std::string& path)
{
    boost::property_tree::ptree tree = readTree(path);
    if (tree.get<std::string>("data.properties.type") != "knn")
        return false;
    _descriptorSize = tree.get<unsigned int>("data.properties.size");
    _descriptorCount = tree.get<unsigned int>("data.properties.count");
    boost::property_tree::ptree& descriptors = tree.get_child("data.descriptors");
    for (const char* markup : {"<xmlattr>", "<xmlcomment>"}) // neither is an element
        descriptors.erase(markup);
    if (descriptors.size() != _descriptorCount)
        throw badData("count is " + std::to_string(_descriptorCount) + ", but there are " +
                      std::to_string(descriptors.size()) + " descriptors");
    for (const auto& [tag, descriptor] : descriptors)
        _addDescriptor(descriptor.data());
    return true;
}

void KNNClassification::_addDescriptor(const std::string& text)
{
    std::istringstream stream(text);
    stream.imbue(std::locale::classic());
    stream.exceptions(std::ios::badbit); // passes on what is no fault of the text
    int label = 0;
    stream >> label;
    std::vector<float> elements;
    for (float element; elements.size() < _descriptorSize && stream >> element;)
        elements.push_back(element);
    if (!stream || elements.size() < _descriptorSize)
        throw badData("descriptor " + std::to_string(_labels.size()) + " is no label and " +
                      std::to_string(_descriptorSize) + " numbers: \"" + text + "\"");

    const std::size_t place = _labels.size() % blockSize;
    _labels.push_back(label);
    if (place == 0)
        _descriptors.resize(_descriptors.size() + blockSize * elements.size());
    auto* const block = _descriptors.data() + _descriptors.size() - blockSize * elements.size();
    for (std::size_t i = 0; i < elements.size(); ++i)
        block[i * blockSize + place] = elements[i];
}

int KNNClassification::_classify(const std::vector<float>& query, std::size_t k) const
{
    // More slots than descriptors would stay empty, so they need no room to vote for 0. A single neighbour
    // too far away for its slot is still the nearest.
    const std::size_t slots = std::min(k, _labels.size());
    Neighbours neighbours(slots, k == 1 ? _labels.front() : 0);
    const auto kernel = [](bool* near, auto... arguments) { *near = computeDistances(arguments...); };
    const float* block = _descriptors.data();
    for (std::size_t first = 0; first < _labels.size();
         first += blockSize, block += blockSize * query.size()) {
        float distances[blockSize];
        bool near = false;
        runVectorised(kernel, &near, query.data(), query.size(), block, neighbours.farthest(), distances);
        if (near)
            for (std::size_t i = 0; i < std::min(blockSize, _labels.size() - first); ++i)
                neighbours.offer(distances[i], _labels[first + i]);
    }

    std::map<int, std::size_t> votes = neighbours.votes();
    votes[0] += k - slots;
    const auto fewer = [](const auto& left, const auto& right) { return left.second < right.second; };
    return std::max_element(votes.begin(), votes.end(), fewer)->first; // the first of a tie
}

Values KNNClassification::applyFilter(const Values& inputs, const StringHash&, const StringHash&, long long)
{
    if (!guards.admit(inputs))
        return {};
    const Values* elements = payload<Values>(inputs[0]);
    if ((elements ? elements->size() : 0) != _descriptorSize)
        return {};
    std::vector<float> query;
    for (std::size_t i = 0; i < _descriptorSize; ++i) {
        if (!(*elements)[i])
            return guards.refuse();
        query.push_back(number<float>((*elements)[i]));
    }
    const bool hasK = inputs.size() == 2 && inputs[1] && inputs[1]->getType() == DataType::Integer;
    const int k = hasK ? number<int>(inputs[1]) : 1;
    if (k < 2 && _descriptorCount == 0)
        return {};
    return one(boost::make_shared<Data>(_classify(query, static_cast<std::size_t>(std::max(k, 1)))));
}

} // namespace ZR::Corvale::Filters
