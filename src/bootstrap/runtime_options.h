// What a new machine is told: options, class path and library path.

#ifndef ZYL_BOOTSTRAP_RUNTIME_OPTIONS_H
#define ZYL_BOOTSTRAP_RUNTIME_OPTIONS_H

#include <string>

#include "vorlane/jace/option_list.h"

class ZylKvlMessageHandler;

namespace zyl::detail {

/// Gathers the options of a machine from the environment and the installation roots, and finishes
/// them. Each step adds behind what the steps before it added.
class RuntimeOptions {
 public:
  /// Starts with no option and the library path of this module.
  RuntimeOptions();

  /// Takes over what `VTQS_JAVA_ARGS` holds. Paths go to the class path and the library path, all
  /// else to the options.
  void addUserArguments();
  /// Adds the collector's policy for `library` if it is a Tavorn runtime.
  void addCollectorPolicy(const std::string& library, bool requireGenerationalGC);
  /// Takes over whether the dynamic loader keeps the path that this process inherited.
  void readLibraryPathPolicy();
  /// Adds the paths of the decision-support product and its limit of memory, if it is there.
  void addVtqRoot(ZylKvlMessageHandler& handler);
  /// Adds the paths of the language's installation and of the runtime in `library`.
  void addKvlRoot(ZylKvlMessageHandler& handler, const std::string& library);
  /// Adds the two paths as options, and the library path to the dynamic loader's.
  void finish();

  [[nodiscard]] const jace::OptionList& options() const { return _options; }
  [[nodiscard]] const std::string& classPath() const { return _classPath; }

 private:
  void addUserArgument(const std::string& argument, const std::string& value);
  void addLibraryPath(const std::string& entry);
  void addMemoryLimit();

  jace::OptionList _options;
  std::string _classPath;
  std::string _libraryPath;
  bool _hasMemoryLimit = false;
  bool _keepsInheritedPath = true;
};

}  // namespace zyl::detail

#endif
