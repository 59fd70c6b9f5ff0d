#include "platform/updates/UpdateSchedule.h"

#include <algorithm>

namespace lumenfold::updateSchedule {
namespace {

using std::chrono::milliseconds;

milliseconds share(milliseconds whole, double chance)
{
    return milliseconds(static_cast<milliseconds::rep>(static_cast<double>(whole.count()) * chance));
}

} // namespace

milliseconds delayUntilNext(std::chrono::sys_seconds now, std::optional<std::chrono::sys_seconds> last, double chance)
{
    const milliseconds afterStart = startDelay + share(startJitter, chance);
    if (!last || *last > now) {
        return afterStart;
    }
    const milliseconds sinceLast = now - *last;
    return std::max(interval + share(intervalJitter, chance) - sinceLast, afterStart);
}

} // namespace lumenfold::updateSchedule
