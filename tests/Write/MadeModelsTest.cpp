#include <algorithm>
#include <iterator>
#include <limits>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include "Support/RoundTrip.h"

namespace orvalo {
namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr int greatestInt = std::numeric_limits<int>::max();

/// What programs may put into a model by mistake, and what they may well mean.
class Whims {
public:
    explicit Whims(unsigned int seed) : random_(seed) {}

    std::size_t Below(std::size_t count) { return random_() % count; }
    template <class Value, std::size_t n>
    Value Of(const Value (&values)[n]) {
        return values[Below(n)];
    }
    void Change(double& number) {
        number = Of<double>({0, -0.0, 1, -1, 0.1, 1.0 / 3, 25, -300, 4.9e-324, 1e-310, 1e-7, 123456.789, 1e22, 1.7e308,
                             infinity, -infinity, nan});
    }
    void Change(int& number) {
        number = Of<int>(
            {0, 1, -1, 2, 3, 4, -2, -3, -1000, 32768, 65535, 65536, greatestInt, std::numeric_limits<int>::min()});
    }
    void Change(short& number) { number = Of<short>({0, 1, -1, 2, 300, 32767, -32768}); }
    void Change(bool& flag) { flag = Below(2) == 0; }
    void Change(std::string& name) {
        name = Of<std::string>({"", "a", "A", "a b", "\"", "a\nb", "\xC3\xA9", "x.=+-_", "end", "1e5", ";", "..",
                                "/dev/full", std::string(70000, 'n'), std::string("a\0", 2)});
    }
    void Change(Point& p) { Change(Of<short*>({&p.x, &p.y, &p.z})[0]); }
    void Change(FileProperties& file) {
        if (Below(2) == 0) return Change(file.fileName);
        Change(*Of<int*>({&file.writeMode, &file.notation, &file.fileFormat}));
    }
    template <class Output>
    void ChangeOutput(std::map<int, Output>& outputs) {
        int id = 1;
        if (Below(3) == 0) Change(id);
        Output& output = outputs[id];
        if (Below(2) == 0) output.shared.id = id;
        if (Below(3) == 0) Change(output.shared.position);
        if (Below(2) == 0) Change(output.file);
        if (Below(2) == 0) {
            output.output = Of<std::string>({"", "u", "uu", "uvwm", "x", "U", "u0", "u0u", "u1v2w0",
                                             "u0v0w0u1v1w1u2v2w2", "u0v0w0u1v1w1u2v2w2u0v0w0u1v1w1u2v2w2"});
        }
    }
    void Change(Table& table) {
        if (Below(2) == 0) return Change(table.id);
        table.count = Below(4);
        table.Allocate(Below(2) == 0);
        for (std::size_t i = 0; i < table.count; ++i) {
            double value = 0;
            Change(value);
            if (table.doublePrecision) {
                static_cast<double*>(table.data)[i] = value;
            } else {
                static_cast<float*>(table.data)[i] = static_cast<float>(value);
            }
        }
    }
    std::shared_ptr<Table> NewTable(int id) {
        const auto table = std::make_shared<Table>();
        table->id = id;
        Change(*table);
        return table;
    }

private:
    std::mt19937 random_;
};

using Change = void (*)(Whims& w, Model& m);
constexpr Change changes[] = {
    [](Whims& w, Model& m) {
        w.Change(*w.Of<double*>({&m.cellSize, &m.timeStep, &m.startTime, &m.roomTemperature}));
    },
    [](Whims& w, Model& m) {
        Material material;
        w.Change(material.name);
        double n[9];
        for (double& number : n) w.Change(number);
        const int format = w.Of<int>({0, 1, 2, 3});
        if (format == 0) material.SetFormat0(n[0], n[1], n[2]);
        if (format == 1) material.SetFormat1(n[0], n[1], n[2]);
        if (format == 2) material.SetFormat2({n[0], n[1], n[2]}, {n[3], n[4], n[5]}, {n[6], n[7], n[8]});
        if (format == 3) w.Change(*w.Of<double*>({&material.vp, &material.vs, &material.mu, &material.lambda}));
        m.materials.Add(material, w.Of<int>({0, 1, 2, 255}));
    },
    [](Whims& w, Model& m) {
        m.cubes.AllocCubes(w.Below(4), w.Below(2) == 0);
        for (std::size_t i = 0; i < m.cubes.CubesCount(); ++i) {
            unsigned char* const record = m.cubes.CubesPtr() + i * Cubes::recordSize;
            if (w.Below(3) != 0) record[w.Below(7)] = w.Of<unsigned char>({1, 1, 1, 2, 127, 128, 255});
            if (w.Below(3) != 0) record[6] = 1;
            if (m.cubes.TemperaturesPtr() != nullptr) w.Change(m.cubes.TemperaturesPtr()[i]);
        }
    },
    [](Whims& w, Model& m) {
        Actuator& a = m.actuators[w.Below(m.actuators.size())];
        Actuator::Definition& d = a.definition;
        w.Change(*w.Of<int*>({&a.start, &a.input, &a.method, &a.tableId, &d.type, &d.waveform, &d.envelope}));
        w.Change(*w.Of<bool*>({&a.invert, &a.directionU, &a.directionV, &a.directionW}));
        w.Change(
            *w.Of<double*>({&a.amplitude, &a.factorU, &a.factorV, &a.factorW, &d.frequency, &d.duration, &d.phase}));
        w.Change(a.shared.position);
    },
    [](Whims& w, Model& m) {
        Piezo& p = *m.piezos.at(0);
        if (w.Below(2) == 0) w.Change(*w.Of<int*>({&p.shared.id, &p.start, &p.method}));
        if (w.Below(3) == 0) w.Change(w.Below(2) == 0 ? p.direction : p.shared.position);
        if (w.Below(3) == 0) w.Change(p.amplitude);
        if (w.Below(2) == 0) p.tables[1] = w.NewTable(1);
        if (w.Below(3) == 0) p.tables[65537] = w.NewTable(65537);
        const auto id = w.Of<unsigned short>({0, 1, 2});
        p.data.Add(w.Of<short>({-32768, -1, 1}), static_cast<short>(p.data.Cells().size()), id, id,
                   w.Below(2) == 0 ? id : w.Of<unsigned short>({0, 1, 2}));
    },
    [](Whims& w, Model& m) { w.ChangeOutput(m.sensors); },
    [](Whims& w, Model& m) { w.ChangeOutput(m.dumps); },
    [](Whims& w, Model& m) {
        const int id = w.Of<int>({1, 2, 0, greatestInt});
        m.tables[id] = w.NewTable(id);
    },
    [](Whims& w, Model& m) {
        const int id = w.Of<int>({1, 2, 0, -1, greatestInt});
        m.sets[id] = std::make_shared<Set>(id, static_cast<unsigned int>(w.Below(3)));
        if (m.sets[id]->count > 0) w.Change(m.sets[id]->points[0]);
    },
};

/// A model without what the file has no place for.
std::string ShowMeant(Model model) {
    static Table none;
    model.requiredTables.clear();
    std::erase_if(model.tables, [](const auto& entry) { return entry.first < 0; });
    for (Actuator& actuator : model.actuators) {
        actuator.table = &none;
        actuator.tableId = std::max(actuator.tableId, 0);
    }
    for (auto& piezo : model.piezos) {
        piezo = std::make_shared<Piezo>(*piezo);
        piezo->usedTables.clear();
        piezo->samplesCount = 0;
    }
    for (auto& entry : model.dumps) entry.second.shared.position = {};
    return support::ShowWritten(model);
}

TEST(MadeModels, AreRefusedOrComeBackEqual) {
    const std::string source = support::WriteFile("source.model", support::Sections("AMCGXWTPSDE"));
    const std::string path = support::ScratchDirectory() + "/whim.model";
    int written = 0;
    int refused = 0;
    for (unsigned int seed = 0; seed < 3000; ++seed) {
        Whims whims(seed);
        Model model = ReadModel(source);
        for (std::size_t n = whims.Below(2) + 1; n > 0; --n) changes[whims.Below(std::size(changes))](whims, model);
        const std::string meant = ShowMeant(model);
        try {
            WriteModel(model, path, support::Overwriting());
        } catch (const WriteError&) {
            ++refused;
            continue;
        }
        ++written;
        try {
            EXPECT_EQ(ShowMeant(ReadModel(path)), meant) << "seed " << seed;
        } catch (const Exception& failure) {
            ADD_FAILURE() << "seed " << seed << ": " << failure.what() << '\n'
                          << support::FileBytes(path).substr(0, 2000);
        }
    }
    EXPECT_TRUE(written > 500 && refused > 500) << written << " written, " << refused << " refused";
}

}  // namespace
}  // namespace orvalo
