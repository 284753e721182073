// The settings file, compared with other stores and with the floor: the least work that any store must do.
// Names are work/store/sites; scripts/bench computes the ratios.
#include "tests/bench/stores.h"

#include <benchmark/benchmark.h>
#include <chrono>
#include <malloc.h>
#include <memory>
#include <string>

namespace corvrec
{

namespace
{

constexpr const char* kKey = "Ricorrenza";

std::size_t HeapBytes()
{
    const struct mallinfo2 heap = mallinfo2();
    return heap.uordblks + heap.hblkhd;
}

// Lists the sites, including opening the store.
template <class Store>
void ListCold(benchmark::State& state)
{
    const SitesFile file(static_cast<int>(state.range(0)));
    for (auto each : state) {
        Store store(file);
        benchmark::DoNotOptimize(store.List());
    }
}

template <class Store>
void ReadCold(benchmark::State& state)
{
    const SitesFile file(static_cast<int>(state.range(0)));
    for (auto each : state) {
        Store store(file);
        benchmark::DoNotOptimize(store.Read(file.Code(), kKey));
    }
}

template <class Store>
std::string ReadOnce(Store& store, const std::string& section, const char* key)
{
    return store.Read(section, key);
}

std::string ReadOnce(Floor& floor, const std::string& section, const char* key)
{
    return floor.ReadAgain(section, key);
}

template <class Store>
void ReadWarm(benchmark::State& state)
{
    const SitesFile file(static_cast<int>(state.range(0)));
    Store store(file);
    benchmark::DoNotOptimize(store.Read(file.Code(), kKey));
    for (auto each : state)
        benchmark::DoNotOptimize(ReadOnce(store, file.Code(), kKey));
}

// Reads all values of a site, including opening the store.
template <class Store>
void LoadSite(benchmark::State& state)
{
    const SitesFile file(static_cast<int>(state.range(0)));
    for (auto each : state) {
        Store store(file);
        benchmark::DoNotOptimize(store.Read(file.Code(), kSiteKeys.front().key.data()));
        for (const KeyLine& line : kSiteKeys)
            benchmark::DoNotOptimize(ReadOnce(store, file.Code(), line.key.data()));
    }
}

template <class Store>
void SaveSite(benchmark::State& state)
{
    const SitesFile file(static_cast<int>(state.range(0)));
    Store store(file);
    int round = 0;
    store.Save(file.Code(), ++round);
    for (auto each : state)
        store.Save(file.Code(), ++round);
}

template <class Store>
void DeleteSection(benchmark::State& state)
{
    using Clock = std::chrono::steady_clock;
    const SitesFile file(static_cast<int>(state.range(0)));
    for (auto each : state) {
        file.Restore();
        Store store(file);
        benchmark::DoNotOptimize(store.Read(file.Code(), kKey));
        const auto start = Clock::now();
        store.DeleteSection(file.Code());
        state.SetIterationTime(std::chrono::duration<double>(Clock::now() - start).count());
    }
}

// The memory that a store holds after every site was read.
template <class Store>
void Memory(benchmark::State& state)
{
    const SitesFile file(static_cast<int>(state.range(0)));
    for (auto each : state) {
        const std::size_t before = HeapBytes();
        Store store(file);
        for (int site = 0; site < state.range(0); ++site) {
            const std::string digits = std::to_string(site);
            benchmark::DoNotOptimize(store.Read("S" + std::string(5 - digits.size(), '0') + digits, kKey));
        }
        state.counters["times the file"] =
            static_cast<double>(HeapBytes() - before) / static_cast<double>(file.Bytes().size());
    }
}

template <class Store>
void RegisterReading(const std::string& name, int sites)
{
    const auto add = [&](const char* work, void (*run)(benchmark::State&)) {
        benchmark::RegisterBenchmark((work + ("/" + name)).c_str(), run)->Arg(sites);
    };
    add("list", ListCold<Store>);
    add("read cold", ReadCold<Store>);
}

template <class Store>
void Register(const std::string& name, int sites)
{
    RegisterReading<Store>(name, sites);
    const auto add = [&](const char* work, void (*run)(benchmark::State&)) {
        return benchmark::RegisterBenchmark((work + ("/" + name)).c_str(), run)->Arg(sites);
    };
    add("read warm", ReadWarm<Store>);
    add("load", LoadSite<Store>);
    add("save", SaveSite<Store>);
    add("delete", DeleteSection<Store>)->UseManualTime();
}

template <class Store>
void RegisterMemory(const std::string& name, int sites)
{
    benchmark::RegisterBenchmark(("memory/" + name).c_str(), Memory<Store>)->Arg(sites)->Iterations(1);
}

void RegisterAll(int sites)
{
    Register<Floor>("floor", sites);
    Register<OurStore>("ours", sites);
    Register<QtStore>("QSettings", sites);
    Register<GlibStore>("GKeyFile", sites);
    Register<SimpleIniStore>("SimpleIni", sites);
    RegisterReading<InihStore>("inih", sites);
    RegisterMemory<OurStore>("ours", sites);
    RegisterMemory<QtStore>("QSettings", sites);
    RegisterMemory<GlibStore>("GKeyFile", sites);
    RegisterMemory<SimpleIniStore>("SimpleIni", sites);
}

} // namespace

} // namespace corvrec

// Arguments other than the benchmarks' own are numbers of sites.
int main(int argc, char* argv[])
{
    benchmark::Initialize(&argc, argv);
    if (argc < 2) {
        for (const int sites : {10, 100, 1000, 10000})
            corvrec::RegisterAll(sites);
    }
    for (int i = 1; i < argc; ++i)
        corvrec::RegisterAll(std::stoi(argv[i]));
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
