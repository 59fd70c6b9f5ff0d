#include "bench/whole_program/MainThreadWatch.h"

#include <algorithm>
#include <stdexcept>

namespace lumenfold::bench {

MainThreadWatch::MainThreadWatch()
{
    // Lives as long as the file.
    if (m_file.open() && m_file.resize(sizeof(LoopRecord))) {
        m_record = reinterpret_cast<LoopRecord *>(m_file.map(0, sizeof(LoopRecord), QFile::NoOptions));
    }
    if (m_record == nullptr) {
        throw std::runtime_error("the record of the event loop cannot be made");
    }
}

QProcessEnvironment MainThreadWatch::environment() const
{
    QProcessEnvironment variables;
    variables.insert(QStringLiteral("LD_PRELOAD"), QStringLiteral(LUMENFOLD_LOOP_PROBE));
    variables.insert(QString::fromLatin1(LoopRecord::fileVariable), m_file.fileName());
    return variables;
}

void MainThreadWatch::begin(pid_t program)
{
    if (m_record->program != program) {
        throw std::runtime_error("the program has no probe of its event loop in it");
    }
    m_record->longestAway = 0;
}

Milliseconds MainThreadWatch::longestAway() const
{
    const std::int64_t since = m_record->awaySince;
    const std::int64_t now = std::chrono::nanoseconds(Clock::now().time_since_epoch()).count();
    const std::int64_t lasting = since == 0 ? 0 : now - since;
    return std::chrono::nanoseconds(std::max(lasting, m_record->longestAway.load()));
}

} // namespace lumenfold::bench
