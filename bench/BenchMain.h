#pragma once

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <functional>
#include <string>
#include <vector>

namespace lumetra::bench {

// Benchmarks register through here instead of BENCHMARK(), so that scripts/icount.sh can
// run each with an exact iteration count under callgrind and divide instructions by it.
struct Registration {
    const char* name;
    void (*function)(benchmark::State&);
};

inline std::vector<Registration>& registry() {
    static std::vector<Registration> all;
    return all;
}

struct Registrar {
    Registrar(const char* name, void (*function)(benchmark::State&)) {
        registry().push_back({name, function});
    }
};

} // namespace lumetra::bench

#define LUMETRA_BENCHMARK(function)                                                            \
    static const ::lumetra::bench::Registrar function##_registrar(#function, function)
