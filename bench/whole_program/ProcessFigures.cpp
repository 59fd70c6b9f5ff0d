#include "bench/whole_program/ProcessFigures.h"

#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <thread>

namespace lumenfold::bench {
namespace {

std::filesystem::path folderOf(pid_t process)
{
    return std::filesystem::path("/proc") / std::to_string(process);
}

/// The number behind each occurrence of a label, added up.
long long sumOf(const std::filesystem::path &file, const std::string &label)
{
    std::ifstream lines(file);
    long long sum = 0;
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with(label)) {
            sum += std::stoll(line.substr(label.size()));
        }
    }
    return sum;
}

long long switchesOf(pid_t process)
{
    long long switches = 0;
    for (const auto &thread : std::filesystem::directory_iterator(folderOf(process) / "task")) {
        switches += sumOf(thread.path() / "status", "voluntary_ctxt_switches:");
        switches += sumOf(thread.path() / "status", "nonvoluntary_ctxt_switches:");
    }
    return switches;
}

} // namespace

double proportionalMemory(pid_t process)
{
    const long long kibibytes = sumOf(folderOf(process) / "smaps_rollup", "Pss:");
    if (kibibytes == 0) {
        throw std::runtime_error("the memory of process " + std::to_string(process) + " cannot be read");
    }
    return static_cast<double>(kibibytes) / 1024;
}

double wakeUpsPerSecond(pid_t process, std::chrono::seconds period)
{
    const long long before = switchesOf(process);
    std::this_thread::sleep_for(period);
    return static_cast<double>(switchesOf(process) - before) / static_cast<double>(period.count());
}

} // namespace lumenfold::bench
