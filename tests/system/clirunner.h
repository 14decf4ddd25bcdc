#pragma once

#include <boost/filesystem.hpp>
#include <gtest/gtest.h>
#include <opencv2/imgcodecs.hpp>
#include <opencv2/videoio.hpp>

#include <sys/wait.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace support {

/// Runs the program `corvale` in a folder of its own, which goes with the test.
class CliRunner : public ::testing::Test
{
protected:
    struct Result
    {
        int exitCode;
        std::string output;
        std::string errors;
    };

    CliRunner()
    {
        boost::filesystem::create_directories(folder);
        boost::filesystem::create_symlink(CORVALE_PROGRAM, folder / "corvale");
        boost::filesystem::create_symlink(CORVALE_EXAMPLES, folder / "examples");
    }
    ~CliRunner() override
    {
        boost::system::error_code ignored;
        boost::filesystem::remove_all(folder, ignored);
    }

    /// Runs a shell command in the folder; "corvale" and "examples" stand for what is built and shipped.
    Result shell(const std::string& command) const
    {
        const std::string whole =
            "cd " + folder.string() + " && PATH=.:$PATH && { " + command + "; } >out.log 2>err.log";
        const int status = std::system(("bash -c '" + whole + "'").c_str());
        return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, text("out.log"), text("err.log")};
    }
    Result run(const std::string& arguments) const { return shell("corvale run --quiet " + arguments); }
    bool succeeds(const std::string& arguments) const { return run(arguments).exitCode == 0; }
    std::string output(const std::string& arguments) const { return run(arguments).output; }

    /// The lines "left => right" of a table beside the tests.
    static std::vector<std::pair<std::string, std::string>> rows(const std::string& table)
    {
        std::vector<std::pair<std::string, std::string>> all;
        std::ifstream file(CORVALE_TABLES + table);
        for (std::string line; std::getline(file, line);)
            all.emplace_back(line.substr(0, line.find(" => ")), line.substr(line.find(" => ") + 4));
        EXPECT_FALSE(all.empty()) << table;
        return all;
    }

    std::string path(const std::string& name) const { return (folder / name).string(); }
    std::string text(const std::string& name) const
    {
        std::ifstream file(path(name), std::ios::binary);
        return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    }
    void write(const std::string& name, const std::string& content) const
    {
        std::ofstream(path(name), std::ios::binary) << content;
    }

    /// A grey video: frame i is of level 20 * i.
    void writeVideo(const std::string& name, int frames, double rate) const
    {
        cv::VideoWriter writer(path(name), cv::VideoWriter::fourcc('M', 'J', 'P', 'G'), rate, {32, 16});
        for (int i = 0; i < frames; ++i)
            writer.write(cv::Mat(16, 32, CV_8UC3, cv::Scalar::all(20 * i % 256)));
    }
    /// A picture of one value, the red one in case of colours.
    void writePicture(const std::string& name, int width, int height, double level, int type = CV_8UC1) const
    {
        const cv::Scalar pixel = type == CV_8UC3 ? cv::Scalar(0, 0, level) : cv::Scalar(level);
        EXPECT_TRUE(cv::imwrite(path(name), cv::Mat(height, width, type, pixel)));
    }
    /// Empty if there is none.
    cv::Mat picture(const std::string& name) const
    {
        return boost::filesystem::exists(path(name)) ? cv::imread(path(name), cv::IMREAD_UNCHANGED)
                                                     : cv::Mat();
    }
    std::vector<cv::Mat> frames(const std::string& name) const
    {
        cv::VideoCapture capture(path(name));
        std::vector<cv::Mat> all;
        for (cv::Mat frame; capture.read(frame);)
            all.push_back(frame.clone());
        return all;
    }

    const boost::filesystem::path folder =
        boost::filesystem::temp_directory_path() / boost::filesystem::unique_path("corvale-%%%%%%%%");
};

inline long lines(const std::string& text)
{
    return std::count(text.begin(), text.end(), '\n');
}

} // namespace support
