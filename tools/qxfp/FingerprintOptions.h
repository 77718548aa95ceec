#pragma once

#include <string>

#include "QXFingrix/QXFPTypeBase.h"
#include "QXSystem/QXInterface.h"

namespace qxfp {

/// Adds the sub-interface "fingerprint options" with "-fptype", "-numbits", "-mindistance", "-maxdistance",
/// "-atomtype" and "-bondtype", and "-type", which names the whole type in one text instead.
/// Errors   a Warning and false when the sub-interface cannot be added.
bool ConfigureFingerprintOptions(QXSystem::QXInterface& itf);

/// The first of these options that is given, null when none is.
const char* FindFingerprintOption(const QXSystem::QXInterface& itf);

/// The fingerprint type that the options choose. What is not given is as in the default type of the kind; a
/// "-type" is a full type string, or a bare type word ("MACCS166") for the default type of that kind.
/// Errors   null and a reason in words: "-type" together with another option, a malformed type string, an
///          unknown atom or bond type, both of them None, a minimum above the maximum. No report.
const QXFingrix::QXFPTypeBase* SetupFingerprintType(const QXSystem::QXInterface& itf, std::string& reason);

/// Whether fingerprints of exactly this type can be made: there is a generator for the kind, and it takes the
/// parameters as they are (generators replace parameters that they cannot serve).
/// Errors   false and a reason in words. No report.
bool CanMakeFingerprint(const QXFingrix::QXFPTypeBase* type, std::string& reason);

}  // namespace qxfp
