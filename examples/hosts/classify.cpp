// Lawn, path or building? Learns from every second tile of a video's first frame, by the tiles' colours, and
// names the other tiles in all later frames.
//
//   corvale_classify examples/data/pedestrians.avi surfaces.xml
//
//   frame, tile --> [ Extract --> Histogram ] --> describe:colours --> numbers --+--> surfaces.xml
//                                                                                v         |
//                                     name:surface <-- [ KNN: 3 nearest neighbours ] <-----+

#include "corvale/data/data.h"
#include "corvale/data/datacolorimage.h"
#include "corvale/data/datahistogram.h"
#include "corvale/engine/corvale.h"

#include <boost/make_shared.hpp>
#include <opencv2/imgproc.hpp>
#include <opencv2/videoio.hpp>

#include <filesystem>
#include <fstream>
#include <iostream>

using ZR::Corvale::Data;
namespace Type = ZR::Corvale::Type;
using Values = std::vector<boost::shared_ptr<Data>>;

namespace {

// The tiles are squares in three places: lawn, path, building. Each colour has eight bins.
constexpr int side = 16;
constexpr int bins = 24;
const cv::Rect places[] = {{0, 176, 128, 80}, {224, 120, 96, 48}, {144, 4, 160, 48}};

// How often the colours occur in one tile. Neighbouring levels share a bin.
Values describe(ZR::Corvale::Corvale& engine, int x, int y)
{
    engine.setData("tile", boost::make_shared<Data>(Type::Region2(x, y, x + side - 1, y + side - 1)));
    const boost::shared_ptr<Data> colours = engine.getData("describe:colours");
    const auto* histogram = static_cast<Type::Histogram*>(*colours);
    std::vector<int> counts(bins);
    for (int i = 0; i < 3 * 256; ++i)
        counts[i * bins / (3 * 256)] += static_cast<int>(histogram->data(i % 256, i / 256));
    Values values;
    for (const int count : counts)
        values.push_back(boost::make_shared<Data>(count));
    return values;
}

// Calls `use` with the surface and the description of every second tile, beginning with number `first`.
template <typename Use>
void eachTile(ZR::Corvale::Corvale& engine, const cv::Mat& frame, int first, Use use)
{
    const auto picture = boost::make_shared<Type::ColorImage>(frame.cols, frame.rows);
    cv::cvtColor(frame, picture->mat, cv::COLOR_BGR2RGB);
    engine.setData("frame", boost::make_shared<Data>(picture));
    for (int surface = 0, number = first; surface < 3; ++surface)
        for (int y = places[surface].y; y < places[surface].br().y; y += side)
            for (int x = places[surface].x; x < places[surface].br().x; x += side)
                if (number++ % 2 == 0)
                    use(surface, describe(engine, x, y));
}

} // namespace

int main(int count, char** arguments)
{
    ZR::Corvale::Corvale engine(0); // no workers, and no period to wait for: getData answers each question
    cv::VideoCapture video;
    cv::Mat frame;
    if (count != 3 || !video.open(arguments[1]) || !video.read(frame) || frame.size() != cv::Size(384, 288) ||
        !engine.loadProgram(R"(
            source frame { }
            source tile { }
            source description { }
            filter Describe
            {
                Extract cut; Histogram count; cut -> count;
                cut:in <= frame; cut:region <= tile; count => colours
            }
            process describe(Describe, 3, infinity) { frame <= frame; tile <= tile; colours => colours }
        )")) {
        std::cerr << "usage: corvale_classify VIDEO DATABASE.xml, the video of 384 x 288 pixels\n";
        return 2;
    }

    int learned = 0;
    std::string descriptors;
    eachTile(engine, frame, 0, [&](int surface, const Values& description) {
        descriptors += "<tile>" + std::to_string(surface);
        for (const auto& number : description)
            descriptors += " " + std::to_string(static_cast<int>(*number));
        descriptors += "</tile>\n";
        ++learned;
    });
    std::ofstream(arguments[2]) << "<data><properties><type>knn</type><size>" << bins << "</size><count>"
                                << learned << "</count></properties><descriptors>\n"
                                << descriptors << "</descriptors></data>\n";
    if (!engine.createClassificationFilter("Surface", ZR::Corvale::KNN,
                                           std::filesystem::absolute(arguments[2])) ||
        !engine.loadProgram(
            "process name(Surface, 3, infinity) { in <= description; k <= 3; out => surface }"))
        return 1;

    int right = 0, named = 0;
    while (video.read(frame))
        eachTile(engine, frame, 1, [&](int surface, const Values& description) {
            engine.setData("description", boost::make_shared<Data>(description));
            const boost::shared_ptr<Data> answer = engine.getData("name:surface");
            right += answer && static_cast<int>(*answer) == surface ? 1 : 0;
            ++named;
        });
    std::cout << "learned " << learned << " tiles; " << right << " of " << named << " named right\n";
}
