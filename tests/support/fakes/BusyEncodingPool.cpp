#include "tests/support/fakes/BusyEncodingPool.h"

#include "platform/image/EncodingPool.h"

#include <QThreadPool>

namespace lumenfold::test {

BusyEncodingPool::BusyEncodingPool()
{
    for (int thread = 0; thread < encodingPool().maxThreadCount(); ++thread) {
        encodingPool().start([this] { m_end.acquire(); });
    }
}

BusyEncodingPool::~BusyEncodingPool()
{
    release();
}

void BusyEncodingPool::release()
{
    m_end.release(encodingPool().maxThreadCount());
    encodingPool().waitForDone();
}

} // namespace lumenfold::test
