// Lets screen readers read and work the views.
#pragma once

namespace quorl {

// To be called once an application exists.
void InstallViewAccess();

}  // namespace quorl
