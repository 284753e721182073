// Decodes replies of each model.
#include "core/device/buffer_status.h"

#include <benchmark/benchmark.h>
#include <string>

namespace corvrec
{

namespace
{

constexpr StatusContext kContext{.now = {.year = 2026, .month = 11, .day = 21},
                                 .text = [](TextId /*id*/) { return std::string("text"); }};

void Decode(benchmark::State& state, BufferModel model, const std::string& reply)
{
    while (state.KeepRunning())
        benchmark::DoNotOptimize(StatusOf(model, reply, kContext));
    state.SetItemsProcessed(state.iterations());
}

void Register(const char* name, BufferModel model, const std::string& reply)
{
    benchmark::RegisterBenchmark(name,
                                 [model, reply](benchmark::State& state) { Decode(state, model, reply); });
}

} // namespace

} // namespace corvrec

int main(int argc, char* argv[])
{
    using namespace corvrec;
    benchmark::Initialize(&argc, argv);
    Register("decode/1.1", BufferModel::stratobox11,
             "\x02"
             "010032768xx 12x\x55\x05\x01"
             "0\x13");
    Register("decode/3.0", BufferModel::stratobox30,
             "\x02"
             "0131072xx 12xM  5  1N63.05211126180300*\x13");
    Register("decode/Buffer", BufferModel::stratoboxBuffer,
             "\x02"
             "0524288   12.5M  5  1N 4.10211126180301*\x13");
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
