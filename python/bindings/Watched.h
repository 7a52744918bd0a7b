#pragma once

#include <atomic>
#include <functional>

#include <pybind11/pybind11.h>

namespace orvalo::python {

/// Runs `work` on a thread of its own. The calling thread, which holds the interpreter's lock, gives it up meanwhile
/// and takes it every now and then to let signal handlers run and to call `progress`, unless that is None, with what
/// `fraction` gives: at most ten times a second, and with 1 at the end. What a handler or `progress` raises sets
/// `stop` and is raised again once `work` has ended; otherwise what `work` throws is thrown.
void RunWatched(const std::function<void()>& work, const std::function<double()>& fraction, std::atomic<bool>& stop,
                const pybind11::object& progress);

/// What a fraction is made of: the cubes read so far, of as many as the file claims to have.
class CubeProgress {
public:
    /// Looks how many cubes the file claims to have, if anybody asks.
    CubeProgress(const std::string& path, const pybind11::object& progress);

    unsigned long long* Counter() { return &read_; }
    double Fraction() const;

private:
    unsigned long long read_ = 0;
    unsigned long long declared_ = 0;
};

}  // namespace orvalo::python
