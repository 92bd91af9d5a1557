cmake_minimum_required(VERSION 3.25)
# Each implementation class of the headers has a type of its own and stands in classes.inc, or no
# test compares it.
file(STRINGS "${source_dir}/tests/support/classes.inc" rows REGEX "^ZYL_CLASS")
file(GLOB_RECURSE headers "${source_dir}/include/vorlane/*.h" "${source_dir}/include/vorlane/*.inc")
set(declaration "^ *ZYL_[A-Z_]*(TYPE|CHANGE|NODE|CLASS|PROPERTY|EXTRACTABLE|RECORD)[A-Z_]*\\((Zyl[A-Za-z0-9]+),.*")
set(count 0)
foreach(header IN LISTS headers)
  file(STRINGS "${header}" lines REGEX "${declaration}")
  foreach(line IN LISTS lines)
    string(REGEX REPLACE "${declaration}" "\\2" class "${line}")
    math(EXPR count "${count} + 1")
    if(NOT rows MATCHES "\\(${class},")
      message(SEND_ERROR "${class} of ${header} is missing in tests/support/classes.inc")
    endif()
  endforeach()
endforeach()

# What is no object of the type family, by design.
set(outside
    ZylAlgorithmI ZylAlgorithmProfilerCallbackI ZylArrayI ZylBoolSharedVarDomainI ZylBoolVarDomainI
    ZylEnvI ZylEnvObjectI ZylExpanderI ZylFixedSizeAllocatorI ZylIntSharedVarDomainI
    ZylIntVarDomainI ZylKvlDisplayI ZylLocalEnvI ZylMTSafeLocalEnvI ZylMemoryManagerObjectI
    ZylModelEvaluatorI ZylMultiCriterionExprI ZylNamedPropertySetI ZylNumSharedVarDomainI
    ZylNumVarDomainI ZylRecycleBinI ZylTypedListManagerI ZylVarDomainI)
set(definition "^class ZYL_EXPORT (Zyl[A-Za-z0-9]+I)( final)?( :.*|$| {.*)")
foreach(header IN LISTS headers)
  file(STRINGS "${header}" lines REGEX "${definition}")
  foreach(line IN LISTS lines)
    string(REGEX REPLACE "${definition}" "\\1" class "${line}")
    if(NOT class IN_LIST outside AND NOT rows MATCHES "\\(${class},")
      message(SEND_ERROR "${class} of ${header} has no type: declare it, or name it as outside")
    endif()
  endforeach()
endforeach()

if(count EQUAL 0)
  message(SEND_ERROR "no class was found in ${source_dir}/include/vorlane")
endif()
message(STATUS "${count} classes")
