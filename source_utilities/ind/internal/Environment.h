// Environment.h
//
// The process environment as the C runtime holds it: a walk over the live entries and the one
// call that sets a variable. Internal: not installed.
#ifndef KORX_INTERNAL_ENVIRONMENT_H
#define KORX_INTERNAL_ENVIRONMENT_H

#include <functional>

namespace korx::detail {

/// Calls visit with each "name=value" entry of the live environment, in the environment's
/// order, until visit returns false. visit must not change the environment.
void WalkEnvironment(const std::function<bool(const char* entry)>& visit);

/// Sets the variable that text ("name=value") names; true on success. The environment is
/// given a copy kept here until the same variable is set again, so no caller's buffer, and no
/// other variable's text, is ever shared with it.
bool PutEnvironmentText(const char* text);

}  // namespace korx::detail

#endif
