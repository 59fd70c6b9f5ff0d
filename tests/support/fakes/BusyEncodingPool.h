#pragma once

#include <QSemaphore>

namespace lumenfold::test {

/// Nothing can be encoded while this lives: the threads that encode pictures have other things to do.
class BusyEncodingPool {
public:
    BusyEncodingPool();
    ~BusyEncodingPool();
    BusyEncodingPool(const BusyEncodingPool &) = delete;
    BusyEncodingPool &operator=(const BusyEncodingPool &) = delete;

    /// Lets them encode again and waits until nothing is left to do.
    void release();

private:
    QSemaphore m_end;
};

} // namespace lumenfold::test
