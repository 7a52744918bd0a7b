#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <fmt/format.h>
#include <unistd.h>

#include <Orvalo3DReader/Orvalo3DReader.h>

// What a byte costs in files of unusual shapes, beside the clean file of their kind that is listed before them: time
// must stay linear, and no shape may be much dearer than another. A token costs more than its bytes do, so that of
// tokens of one byte is the dearest that there is.

namespace {

namespace fs = std::filesystem;
using namespace orvalo;

constexpr std::size_t fileSize = std::size_t{8} << 20U;

struct Shape {
    const char* name;
    std::string content;
    bool clean = false;
    bool results = false;
};

std::string Repeated(const std::function<std::string(std::size_t)>& part, std::size_t size = fileSize) {
    std::string text;
    for (std::size_t i = 0; text.size() < size; ++i) text += part(i);
    return text;
}

std::string Repeated(const std::string& part) {
    return Repeated([&](std::size_t) { return part; });
}

/// Rows of a grid with `format` given its three coordinates and the number of a material.
std::string Cubes(fmt::format_string<std::size_t&, std::size_t&, std::size_t&, std::size_t&> format,
                  const char* fileFormat = "0") {
    std::string text = fmt::format("CUBES count 100000000 format {} data\n", fileFormat);
    return text + Repeated([&](std::size_t i) {
               std::size_t x = i % 211;
               std::size_t y = i / 211 % 199;
               std::size_t z = i / 41989;
               std::size_t material = 1 + i % 4;
               return fmt::format(format, x, y, z, material);
           }) +
           "\nEND END";
}

const std::string anyCubes = "CUBES count 1 format 0 data 1 1 1 1 END END\n";

std::vector<Shape> ModelShapes() {
    return {
        {"clean cubes", Cubes("{} {} {} {}\n"), true},
        {"ends of lines CR LF", Cubes("{} {} {} {}\r\n")},
        {"tabs", Cubes("{}\t{}\t{}\t{}\n")},
        {"commas", Cubes("{},{},{},{}\n")},
        {"comma and blank", Cubes("{}, {}, {}, {}\n")},
        {"aligned columns", Cubes("{:8}{:8}{:8}{:8}\n")},
        {"all rows in one line", Cubes("{} {} {} {} ")},
        {"numbers of 20 digits", Cubes("{:020} {:020} {:020} {:020}\n")},
        {"a number a line", Cubes("{}\n{}\n{}\n{}\n")},
        {"clean cubes with temperatures", Cubes("{} {} {} {} 20.5\n", "1"), true},
        {"temperatures of 17 digits", Cubes("{} {} {} {} 20.512345678901234\n", "1")},
        {"damping", anyCubes + "DAMPING count 100000000 data\n" + Repeated("1 20 300 1 0.25\n") + "END END"},
        {"clean tokens", anyCubes + Repeated("frequency 12.5 direction u\n"), true},
        {"blanks", anyCubes + std::string(fileSize, ' ')},
        {"line feeds", anyCubes + std::string(fileSize, '\n')},
        {"carriage returns", anyCubes + std::string(fileSize, '\r')},
        {"one long comment", anyCubes + ';' + std::string(fileSize, 'c')},
        {"comment of tabs", anyCubes + ';' + std::string(fileSize, '\t')},
        {"short comments", anyCubes + Repeated("; comment\n")},
        {"empty comments", anyCubes + Repeated(";\n")},
        {"equals signs", anyCubes + std::string(fileSize, '=')},
        {"one long keyword", anyCubes + std::string(fileSize, 'k')},
        {"keywords of a letter", anyCubes + Repeated("k ")},
        {"one long string", anyCubes + '"' + std::string(fileSize, 's') + '"'},
        {"string of tabs", anyCubes + '"' + std::string(fileSize, '\t') + '"'},
        {"empty strings", anyCubes + Repeated("\"\"")},
        {"numbers of a digit", anyCubes + Repeated("1 ")},
        {"numbers of 17 digits", anyCubes + Repeated("0.12345678901234567 ")},
        {"numbers with exponents", anyCubes + Repeated("-1.7976931348623157e+308 ")},
        {"numbers of 800 digits", anyCubes + Repeated(std::string(800, '7') + ' ')},
        {"one long number", anyCubes + std::string(fileSize, '7')},
        {"repeated sections", Repeated(anyCubes)},
    };
}

std::string Text(const std::string& part) {
    return "x\ty\tz\tf\tu\tv\n" + Repeated(part);
}

std::vector<Shape> ResultsShapes() {
    const std::string digits(400, '7');
    return {
        {"clean text", Text("12\t3\t45\t0\t1.234567e-05\t-2.5\n"), true, true},
        {"short rows", Text("1\t1\t1\t0\t1\t1\n"), false, true},
        {"long numbers", Text("1\t1\t1\t0\t0.12345678901234567\t-1.7976931348623157e+308\n"), false, true},
        {"hexadecimal", Text("1\t1\t1\t0\t0x1.921fb54442d18p+1\t0x1p-1074\n"), false, true},
        {"denormals", Text("1\t1\t1\t0\t4.9406564584124654e-324\t2.2250738585072011e-308\n"), false, true},
        {"numbers of 400 digits", Text("1\t1\t1\t0\t" + digits + '\t' + digits + '\n'), false, true},
        {"many tabs", Text("1\t1\t1\t0\t1" + std::string(1000, '\t') + "1\n"), false, true},
        {"spread rows", "x\ty\tz\tf\tu\n" + Repeated([](std::size_t i) {
                            return fmt::format("{}\t{}\t{}\t0\t.5\n", i * 7919 % 1000, i * 31 % 1000, i * 17 % 1000);
                        }),
         false, true},
    };
}

void Read(const Shape& shape, const std::string& path) {
    try {
        if (shape.results) {
            const std::unique_ptr<Results> results(ResultsReader(path).Execute());
        } else {
            Model model;
            Reader(path, true).Execute(&model, true);
        }
    } catch (const Exception& failure) {
        // A shape that is refused early would show nothing.
        fmt::print("refused: {}\n", failure.what());
    }
}

double NanosecondsPerByte(const Shape& shape, const std::string& path, std::size_t size) {
    double best = 1e9;
    for (int repetition = 0; repetition < 7; ++repetition) {
        const auto start = std::chrono::steady_clock::now();
        Read(shape, path);
        const std::chrono::duration<double, std::nano> taken = std::chrono::steady_clock::now() - start;
        best = std::min(best, taken.count() / static_cast<double>(size));
    }
    return best;
}

void Measure(const fs::path& folder, const std::vector<Shape>& shapes) {
    double clean = 0;
    fmt::print("{:32} {:>8} {:>10}\n", "shape", "ns/byte", "to clean");
    for (const Shape& shape : shapes) {
        const std::string path = folder / "shape";
        std::ofstream(path, std::ios::binary) << shape.content;
        const double cost = NanosecondsPerByte(shape, path, shape.content.size());
        if (shape.clean) clean = cost;
        fmt::print("{:32} {:8.2f} {:10.2f}\n", shape.name, cost, cost / clean);
    }
}

/// Many tiny files, the opening of which is the system's share, beside nothing: a byte of them has no clean kind.
void MeasureIncludes(const fs::path& folder) {
    constexpr int count = 2000;
    std::string content = anyCubes;
    for (int i = 0; i < count; ++i) {
        std::ofstream(folder / fmt::format("inc{}", i)) << "k\n";
        content += fmt::format("include \"inc{}\"\n", i);
    }
    const std::string path = folder / "shape";
    std::ofstream(path, std::ios::binary) << content;
    fmt::print("{:32} {:8.2f} us/file\n", "tiny includes", NanosecondsPerByte({"", ""}, path, count) / 1000);
}

}  // namespace

int main() {
    const fs::path folder = (fs::is_directory("/dev/shm") ? fs::path("/dev/shm") : fs::temp_directory_path()) /
                            fmt::format("orvalo-shapes-{}", ::getpid());
    fs::create_directories(folder);
    Measure(folder, ModelShapes());
    MeasureIncludes(folder);
    Measure(folder, ResultsShapes());
    fs::remove_all(folder);
}
