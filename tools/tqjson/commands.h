// The commands: each takes the arguments that follow its name and returns the exit status, or
// ends with a Failure.
#pragma once

#include <string>
#include <vector>

namespace tqjson {

int run_format(const std::vector<std::string> &args);
int run_check(const std::vector<std::string> &args);
int run_get(const std::vector<std::string> &args);
int run_base64(const std::vector<std::string> &args);

} // namespace tqjson
