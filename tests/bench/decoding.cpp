// Decodes replies of each model. Counts allocations, since the fields are views of the reply.
#include "core/device/buffer_device.h"
#include "core/device/buffer_status.h"
#include "tests/bench/allocations.h"

#include <atomic>
#include <benchmark/benchmark.h>
#include <cstddef>
#include <cstdlib>
#include <new>
#include <string>

namespace corvrec
{

namespace
{

void Decode(benchmark::State& state, int modelNumber, const std::string& reply)
{
    const std::size_t before = Allocations();
    for (auto each : state)
        benchmark::DoNotOptimize(StatusOf(modelNumber, reply));
    state.counters["allocations"] = static_cast<double>(Allocations() - before);
    state.SetItemsProcessed(state.iterations());
}

void Register(const char* name, int modelNumber, const std::string& reply)
{
    benchmark::RegisterBenchmark(
        name, [modelNumber, reply](benchmark::State& state) { Decode(state, modelNumber, reply); });
}

} // namespace

} // namespace corvrec

int main(int argc, char* argv[])
{
    using namespace corvrec;
    benchmark::Initialize(&argc, argv);
    Register("decode/1.1", model::stratobox11,
             "\x02"
             "010032768xx 12x\x55\x05\x01"
             "0\x13");
    Register("decode/3.0", model::stratobox30,
             "\x02"
             "0131072xx 12xM  5  1N63.05211126180300*\x13");
    Register("decode/Buffer", model::stratoboxBuffer,
             "\x02"
             "0524288   12.5M  5  1N 4.10211126180301*\x13");
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
