#pragma once

#include <exception>

#include <pybind11/pybind11.h>

namespace orvalo::python {

/// Lets this thread, a daemon that Python has left behind, wait until the process ends.
[[noreturn]] void WaitForTheEnd();

/// Runs `work`, which must not touch Python, without the interpreter's lock. A thread that asks for the lock after the
/// interpreter has ended is ended in turn, by unwinding its stack, where what belongs to Python must not be released
/// any more: so `abandon` is called instead, and the thread waits for the end.
template <class Work, class Abandon>
void Unlocked(const Work& work, const Abandon& abandon) {
    PyThreadState* const state = PyEval_SaveThread();
    std::exception_ptr failure;
    try {
        work();
    } catch (...) {
        failure = std::current_exception();
    }
    try {
        PyEval_RestoreThread(state);
    } catch (...) {
        abandon();
        WaitForTheEnd();
    }
    if (failure) std::rethrow_exception(failure);
}

template <class Work>
void Unlocked(const Work& work) {
    Unlocked(work, [] {});
}

}  // namespace orvalo::python
