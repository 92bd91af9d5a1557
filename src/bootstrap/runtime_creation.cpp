// Creating the machine of this process.

#include <exception>
#include <string>

#include "bootstrap/java_utils.h"
#include "bootstrap/message_catalog.h"
#include "bootstrap/pending_exception.h"
#include "bootstrap/runtime_options.h"
#include "bootstrap/trace.h"
#include "common/local_ref.h"
#include "vorlane/bootstrap/launch.h"
#include "vorlane/bootstrap/message_handler.h"
#include "vorlane/jace/helper.h"

using zyl::detail::boolText;
using zyl::detail::dropPendingException;
using zyl::detail::RuntimeOptions;
using zyl::detail::trace;

namespace {

void traceOptions(const jace::OptionList& options) {
  if (!ZylKvlLogger::_enabled) return;
  trace("VM will be created with options:");
  for (const jace::counted_ptr<jace::Option>& option : options) {
    trace("-> ", option->stringValue().c_str());
  }
}

// Asks the loader class to send Java's output to the streams of this process.
bool redirectOutput(JNIEnv* env) {
  const jace::helper::LocalRef<jclass> loader(env, env->FindClass(JavaUtils::JNI_LOADER_CLASS));
  if (dropPendingException(env) || !loader) return false;
  trace("Looking up setRedirectStandardOutput method");
  jmethodID redirect = env->GetStaticMethodID(loader.get(), "setRedirectStandardOutput", "(Z)V");
  if (dropPendingException(env) || redirect == nullptr) return false;
  env->CallStaticVoidMethod(loader.get(), redirect, JNI_TRUE);
  return !dropPendingException(env);
}

void attachAndRedirectOutput() {
  trace("Attaching to JVM environment");
  JNIEnv* env = jace::helper::attach();
  trace("Attached? ", boolText(env != nullptr));
  const bool redirected = env != nullptr && redirectOutput(env);
  trace("Log enabled, redirecting Java System.out and System.err on stdout/stderr: ",
        redirected ? "success" : "failure");
}

const char* textOf(const std::exception& exception) {
  const char* text = exception.what();
  return text == nullptr ? "?" : text;
}

}  // namespace

bool JavaUtils::ZylKvlCreateJVM(ZylKvlMessageHandler& handler, bool redirectJavaOutput,
                                bool requireGenerationalGC) {
  const TraceMethod method("ZylKvlCreateJVM", boolText(redirectJavaOutput),
                           boolText(requireGenerationalGC));
  if (!_jvmInitDone) {
    _jvmInitDone = true;
    if (!CheckIfExistingJVMAvailable(handler, /*report=*/true)) {
      trace("No JVM, creating one");
      RuntimeOptions options;
      options.addUserArguments();
      options.addCollectorPolicy(_jreRuntimeLibUsed, requireGenerationalGC);
      options.readLibraryPathPolicy();
      options.addVtqRoot(handler);
      options.addKvlRoot(handler, _jreRuntimeLibUsed);
      options.finish();
      createWithOptions(handler, options, redirectJavaOutput);
    }
  }
  if (!_jvmIsOk) handler.fatal(zyl::detail::BOOTSTRAP_NO_JVM, nullptr, nullptr);
  return _jvmWasCreatedByUs;
}

void JavaUtils::createWithOptions(ZylKvlMessageHandler& handler, const RuntimeOptions& options,
                                  bool redirectJavaOutput) {
  const jace::VmLoader* loader = nullptr;
  try {
    SetVMLoader();
    loader = jace::helper::getVmLoader();
  } catch (const std::exception& exception) {
    handler.fatal(zyl::detail::BOOTSTRAP_JAVA_ERR_GET_JVM, textOf(exception), nullptr);
  }
  if (loader == nullptr) return;

  try {
    traceOptions(options.options());
    jace::helper::createVm(*loader, options.options(), /*ignoreUnrecognized=*/false);
    trace("VM created");
    if (ZylKvlLogger::_enabled && redirectJavaOutput) attachAndRedirectOutput();
    _jvmWasCreatedByUs = true;
    _jvmIsOk = true;
    handler.info(zyl::detail::BOOTSTRAP_JAVA_CREATED_JVM, _jreRuntimeLibUsed.c_str(),
                 options.classPath().c_str());
  } catch (const std::exception& exception) {
    handler.fatal(zyl::detail::BOOTSTRAP_JAVA_ERR_CREATE_JVM, textOf(exception), nullptr);
  }
}

bool ZylKvlCreateJVM(ZylKvlMessageHandler& handler, bool redirectJavaOutput,
                     bool requireGenerationalGC) {
  return JavaUtils::ZylKvlCreateJVM(handler, redirectJavaOutput, requireGenerationalGC);
}
