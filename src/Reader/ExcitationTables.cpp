#include "Reader/ExcitationTables.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <vector>

#include "Common/OrderedBlocks.h"
#include "Common/PageCommitter.h"
#include "Common/Raise.h"
#include "Reader/ModelAccess.h"

namespace orvalo {

namespace {

/// How many samples are made at a time, between looks at the flag.
constexpr std::size_t piece = 4096;

/// One sample after the other of a waveform. The formulas are evaluated in this very order: samples are compared bit
/// for bit between runs, and to a few units in the last place between machines, whose mathematics libraries differ.
class WaveformSampler {
public:
    explicit WaveformSampler(const Actuator::Definition& definition)
        : definition_(definition), duration_(definition.duration / 1e6), frequency_(SignalFrequency()) {}

    /// The sample at `t` seconds.
    double At(double t) const {
        if (definition_.waveform == ActuatorWaveformGaussian) return GaussianAt(t);
        double s = std::sin(definition_.phase / 180.0 * 3.141592653589793 + t * 6.283185307179586 * frequency_);
        if (definition_.waveform == ActuatorWaveformSquare) s = s >= 0.0 ? 1.0 : -1.0;
        // Pulses are their own envelope.
        if (definition_.type == ActuatorTypeContinuousWave && definition_.envelope == ActuatorEnvelopeHannWindow) {
            s = s * (1.0 - std::cos(t * 6.283185307179586 / duration_)) * 0.5;
        }
        return s;
    }

private:
    /// In hertz.
    double SignalFrequency() const {
        switch (definition_.type) {
            case ActuatorTypeFullPulse:
                return 1.0 / duration_;
            case ActuatorTypeHalfPulse:
                return 1.0 / (duration_ * 2.0);
            case ActuatorTypeContinuousWave:
                return definition_.frequency * 1000.0;
            default:
                return 0.0;
        }
    }

    double GaussianAt(double t) const {
        const double u = (t - duration_ * 0.5) * 10.0 / (duration_ * 0.5);
        return std::pow(2.718281828459045, u * -0.05 * u);
    }

    const Actuator::Definition& definition_;
    double duration_;
    double frequency_;
};

/// Makes the samples from `begin` to before `end`, the first of them at `t`; returns the time of the one after them.
template <class Sample>
double Fill(const WaveformSampler& sampler, Table& table, PageCommitter& pages, std::size_t begin, std::size_t end,
            double t, double timeStep) {
    pages.Reach(end * sizeof(Sample));
    auto* sample = static_cast<unsigned char*>(table.data) + begin * sizeof(Sample);
    for (std::size_t i = begin; i < end; ++i) {
        const auto value = static_cast<Sample>(sampler.At(t));
        std::memcpy(sample, &value, sizeof value);
        sample += sizeof value;
        t += timeStep;
    }
    return t;
}

/// Makes the samples of a table with several threads.
template <class Sample>
class TeamFill {
public:
    TeamFill(const WaveformSampler& sampler, Table& table, PageCommitter& pages, double timeStep, StopFlag stop,
             unsigned int team)
        : sampler_(sampler), table_(table), pages_(pages), timeStep_(timeStep), stop_(stop), start_(team) {}

    // The steps of OrderedBlocks.

    struct Outcome {};

    bool Fetch(unsigned int, std::uint64_t block) const { return First(block) < table_.count && !stop_.IsSet(); }

    /// Times are summed up from the start on, each with the rounding of those before it.
    bool Begin(unsigned int member, std::uint64_t block) {
        start_[member] = time_;
        for (std::size_t i = First(block); i < End(block); ++i) time_ += timeStep_;
        return true;
    }

    Outcome Work(unsigned int member, std::uint64_t block) const {
        Fill<Sample>(sampler_, table_, pages_, First(block), End(block), start_[member], timeStep_);
        return {};
    }

    bool End(const Outcome&) const { return true; }

private:
    std::size_t First(std::uint64_t block) const { return static_cast<std::size_t>(block * piece); }
    std::size_t End(std::uint64_t block) const { return std::min(First(block) + piece, table_.count); }

    const WaveformSampler& sampler_;
    Table& table_;
    PageCommitter& pages_;
    const double timeStep_;
    const StopFlag stop_;
    double time_ = 0.0;
    /// The time of the first sample of each member's block.
    std::vector<double> start_;
};

template <class Sample>
void FillTable(const Actuator::Definition& definition, Table& table, double timeStep, StopFlag stop,
               unsigned int threads) {
    constexpr std::size_t leastForTeam = 16 * piece;
    const WaveformSampler sampler(definition);
    PageCommitter pages(table.data, table.count * sizeof(Sample));
    if (threads > 1 && table.count >= leastForTeam) {
        TeamFill<Sample> fill(sampler, table, pages, timeStep, stop, threads);
        OrderedBlocks<TeamFill<Sample>>(fill, threads).Run();
        return stop.Check();
    }
    double t = 0.0;
    stop.CheckEach(piece, table.count, [&](std::size_t begin, std::size_t end) {
        t = Fill<Sample>(sampler, table, pages, begin, end, t, timeStep);
    });
}

std::size_t SampleCount(const Actuator::Definition& definition, double timeStep) {
    const double count = std::ceil(definition.duration / (timeStep * 1e6));
    const double limit = std::ldexp(1.0, std::numeric_limits<std::size_t>::digits);
    // A table that long fits no memory, so it fails as its allocation would; so does the one that a time step of -0.0
    // asks for.
    if (!(count >= 0.0 && count < limit)) Raise(module::Table, knownLine::TableSamples, ReaderMessages::OutOfMemory);
    return static_cast<std::size_t>(count);
}

}  // namespace

void GenerateTables(Model& model, bool doublePrecision, StopFlag stop, unsigned int threads) {
    int id = -1;
    for (Actuator& actuator : model.actuators) {
        stop.Check();
        if (actuator.tableId != 0) continue;
        while (model.tables.count(id) != 0) --id;
        const auto table = std::make_shared<Table>();
        table->id = id;
        table->count = SampleCount(actuator.definition, model.timeStep);
        ModelAccess::Allocate(*table, doublePrecision);
        if (doublePrecision) {
            FillTable<double>(actuator.definition, *table, model.timeStep, stop, threads);
        } else {
            FillTable<float>(actuator.definition, *table, model.timeStep, stop, threads);
        }
        actuator.tableId = id;
        model.tables.emplace(id, table);
    }
}

void CheckGeneratedTables(ReaderCore& core, const Model& model) {
    for (const Actuator& actuator : model.actuators) {
        if (actuator.tableId != 0) continue;
        Table table;
        core.Attempt([&] {
            table.count = SampleCount(actuator.definition, model.timeStep);
            ModelAccess::Allocate(table, true);
        });
    }
}

void AssignTables(Model& model, StopFlag stop) {
    for (Actuator& actuator : model.actuators) {
        stop.Check();
        actuator.table = model.tables.at(actuator.tableId).get();
    }
}

}  // namespace orvalo
