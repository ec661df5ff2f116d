#pragma once
#include <string>

#include "framework/parameters/IPluginParameter.h"

// Sets a parameter from what a user typed: a plain value in the parameter's unit, one of the
// texts the parameter shows (for switches and stepped rows), or a text with a unit that the
// parameter reads itself ("-6 dB", "50 %"). Empty on success, else why the value is refused.
std::string setParameterFromUser(Ondra::IPluginParameter& parameter, const std::string& value);
