#include "support/LogCapture.h"

#include "foundation/Log.h"
#include "support/TestEnvironment.h"
#include "support/TestTree.h"

#include <fcntl.h>

namespace brightsweep::test {

LogCapture::LogCapture()
    : m_file(TestEnvironment::current().root() / "captured.log"),
      m_descriptor(
          ::open(m_file.c_str(), O_CREAT | O_TRUNC | O_WRONLY | O_APPEND | O_CLOEXEC, 0666)),
      m_before(Log::descriptor()) {
    Log::setDescriptor(m_descriptor.get());
}

LogCapture::~LogCapture() {
    Log::setDescriptor(m_before);
}

std::string LogCapture::text() const {
    return textOf(m_file);
}

} // namespace brightsweep::test
