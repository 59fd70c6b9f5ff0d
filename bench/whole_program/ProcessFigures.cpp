#include "bench/whole_program/ProcessFigures.h"

#include <filesystem>
#include <fstream>
#include <map>
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

/// How often each thread was put on a core or taken off one, by its number.
std::map<std::string, long long> switchesOf(pid_t process)
{
    std::map<std::string, long long> switches;
    for (const auto &thread : std::filesystem::directory_iterator(folderOf(process) / "task")) {
        switches[thread.path().filename()] = sumOf(thread.path() / "status", "voluntary_ctxt_switches:") +
                                             sumOf(thread.path() / "status", "nonvoluntary_ctxt_switches:");
    }
    return switches;
}

double mebibytes(pid_t process, const char *label)
{
    const long long kibibytes = sumOf(folderOf(process) / "smaps_rollup", label);
    if (kibibytes == 0) {
        throw std::runtime_error("the memory of process " + std::to_string(process) + " cannot be read");
    }
    return static_cast<double>(kibibytes) / 1024;
}

} // namespace

double proportionalMemory(pid_t process)
{
    return mebibytes(process, "Pss:");
}

double privateMemory(pid_t process)
{
    return mebibytes(process, "Private_Dirty:");
}

double wakeUpsPerSecond(pid_t process, std::chrono::seconds period)
{
    const std::map<std::string, long long> before = switchesOf(process);
    std::this_thread::sleep_for(period);
    const std::map<std::string, long long> after = switchesOf(process);
    long long wakeUps = 0;
    for (const auto &[thread, switches] : after) {
        const auto old = before.find(thread);
        wakeUps += switches - (old == before.end() ? 0 : old->second);
    }
    // A thread that waited for work and was sent home woke up for that.
    for (const auto &[thread, switches] : before) {
        wakeUps += after.contains(thread) ? 0 : 1;
    }
    return static_cast<double>(wakeUps) / static_cast<double>(period.count());
}

} // namespace lumenfold::bench
