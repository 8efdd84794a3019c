/// Measures a subject against a yardstick. Both do the same work in turns of some milliseconds, and the processor time
/// of the thread is taken, so that whatever else keeps the machine busy hardly touches the ratio.

#ifndef BENCH_COMPARISON_H
#define BENCH_COMPARISON_H

#include <benchmark/benchmark.h>

#include <cstddef>
#include <ctime>

namespace bench {

inline constexpr char COUNTER_SUBJECT[] = "subject_ns";
inline constexpr char COUNTER_RATIO[] = "ratio";

/// The processor time of this thread so far.
inline double SecondsNow()
{
    std::timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

/// The seconds that `act` takes.
template <typename ActT>
double TimeOf(ActT && act)
{
    const double begin = SecondsNow();
    act();
    benchmark::ClobberMemory();
    return SecondsNow() - begin;
}

/// Both return the seconds that they took for `count` operations. The table gets nanoseconds for each operation, and
/// the ratio of the two.
template <typename SubjectT, typename YardstickT>
void Compare(benchmark::State & state, std::size_t count, SubjectT subject, YardstickT yardstick)
{
    double ofSubject = 0;
    double ofYardstick = 0;
    for (auto pass : state) {
        static_cast<void>(pass);
        ofYardstick += yardstick();
        const double now = subject();
        ofSubject += now;
        state.SetIterationTime(now);
    }
    const double operations = static_cast<double>(count) * static_cast<double>(state.iterations());
    state.counters[COUNTER_SUBJECT] = ofSubject * 1e9 / operations;
    if (ofYardstick > 0)
        state.counters[COUNTER_RATIO] = ofSubject / ofYardstick;
}

/// Without a yardstick: only growth is of interest.
template <typename SubjectT>
void Measure(benchmark::State & state, std::size_t count, SubjectT subject)
{
    Compare(state, count, subject, [] { return 0.0; });
}

void RegisterCodec();
void RegisterIndex();
void RegisterInserts();
void RegisterLookups();
void RegisterReads();
void RegisterWrites();

}   // namespace bench

#endif
