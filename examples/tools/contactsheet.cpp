// Lays frames of several videos out on one sheet: a column for each video, a row for each frame.
//
//   contactsheet SHEET.png WIDTH FRAME,FRAME,... TITLE=VIDEO ...
//
// WIDTH is that of a frame on the sheet in pixels; frames count from 0.

#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>
#include <opencv2/videoio.hpp>

#include <iostream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

constexpr int gap = 4;
constexpr int heading = 24;
const cv::Scalar paper(255, 255, 255);

std::vector<int> numbers(const std::string& list)
{
    std::vector<int> result;
    std::istringstream text(list);
    for (std::string number; std::getline(text, number, ',');)
        result.push_back(std::stoi(number));
    return result;
}

// The frames wanted, in ascending order, at the width of the sheet.
std::vector<cv::Mat> framesOf(const std::string& video, const std::vector<int>& wanted, int width)
{
    cv::VideoCapture capture(video);
    std::vector<cv::Mat> frames;
    cv::Mat frame;
    for (int number = 0; frames.size() < wanted.size() && capture.read(frame); ++number) {
        if (number != wanted[frames.size()])
            continue;
        cv::Mat small;
        cv::resize(frame, small, cv::Size(width, frame.rows * width / frame.cols), 0, 0, cv::INTER_AREA);
        cv::copyMakeBorder(small, small, gap, 0, gap, 0, cv::BORDER_CONSTANT, paper);
        frames.push_back(small);
    }
    if (frames.size() < wanted.size())
        throw std::runtime_error("\"" + video + "\" has no frame " + std::to_string(wanted[frames.size()]));
    return frames;
}

cv::Mat columnOf(const std::string& argument, const std::vector<int>& wanted, int width)
{
    const std::size_t sign = argument.find('=');
    if (sign == std::string::npos)
        throw std::runtime_error("\"" + argument + "\" is not of the form TITLE=VIDEO");

    std::vector<cv::Mat> parts = framesOf(argument.substr(sign + 1), wanted, width);
    cv::Mat title(heading, parts.front().cols, CV_8UC3, paper);
    cv::putText(title, argument.substr(0, sign), cv::Point(gap + 2, heading - 6), cv::FONT_HERSHEY_SIMPLEX,
                0.5, cv::Scalar(0, 0, 0), 1, cv::LINE_AA);
    parts.insert(parts.begin(), title);
    cv::Mat column;
    cv::vconcat(parts, column);
    return column;
}

} // namespace

int main(int count, char** arguments)
{
    if (count < 5) {
        std::cerr << "usage: contactsheet SHEET.png WIDTH FRAME,FRAME,... TITLE=VIDEO ...\n";
        return 2;
    }
    try {
        std::vector<cv::Mat> columns;
        for (int i = 4; i < count; ++i)
            columns.push_back(columnOf(arguments[i], numbers(arguments[3]), std::stoi(arguments[2])));
        cv::Mat sheet;
        cv::hconcat(columns, sheet);
        cv::copyMakeBorder(sheet, sheet, 0, gap, 0, gap, cv::BORDER_CONSTANT, paper);
        const std::vector<int> smallest = {cv::IMWRITE_PNG_COMPRESSION, 9, cv::IMWRITE_PNG_STRATEGY,
                                           cv::IMWRITE_PNG_STRATEGY_DEFAULT};
        if (!cv::imwrite(arguments[1], sheet, smallest))
            throw std::runtime_error(std::string("cannot write ") + arguments[1]);
    } catch (const std::exception& error) {
        std::cerr << "contactsheet: " << error.what() << "\n";
        return 2;
    }
}
