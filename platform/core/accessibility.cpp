#include "platform/accessibility.h"

namespace pavane
{

AccessSource::~AccessSource() = default;

}  // namespace pavane
