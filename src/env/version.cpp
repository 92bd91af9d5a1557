#include "vorlane/env/version.h"

const std::int32_t ZylVorlaneVersion::_ZYL_MAJOR_VERSION = 12;
const std::int32_t ZylVorlaneVersion::_ZYL_MINOR_VERSION = 3;
const std::int32_t ZylVorlaneVersion::_ZYL_TECH_VERSION = 0;
const std::int32_t ZylVorlaneVersion::_ZYL_RELEASE_TYPE = 0;
const std::int32_t ZylVorlaneVersion::_ZYL_BUILD_NUMBER = 0;
const char* const ZylVorlaneVersion::_ZYL_NAME = "Vorlane";
const char* const ZylVorlaneVersion::_ZYL_COMMENT = "";
const char* const ZylVorlaneVersion::_ZYL_DATE = "2010-07-01";

void ___Bad_Vorlane_Version_You_Need_To_Link_With_Vorlane_Version_123___() {}
