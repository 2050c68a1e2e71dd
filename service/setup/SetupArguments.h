#pragma once

#include "Certificates.h"
#include "CommandLine.h"
#include "Machine.h"

namespace quorvane::service {

/// What the arguments say about the configuration, with the defaults that follow from other arguments. The
/// message of a failure names the argument.
Result<ServiceSettings> readSettings(const SetupArguments &arguments, const MachineNetwork &machine,
                                     const Places &places);

/// The record of an earlier setup with what the arguments change in it.
Result<SetupRecord> readRecord(const SetupArguments &arguments, const std::optional<SetupRecord> &earlier);

} // namespace quorvane::service
