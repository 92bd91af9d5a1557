// Plug-ins: services added to an environment without its knowing of them.

#ifndef ZYL_MODEL_PLUG_IN_H
#define ZYL_MODEL_PLUG_IN_H

#include "vorlane/model/change.h"

/// A service of an environment, registered under a name.
class ZYL_EXPORT ZylPlugIn : public ZylRttiEnvObjectI {
  ZYL_TYPE(ZylPlugIn, ZylRttiEnvObjectI)
 public:
  explicit ZylPlugIn(ZylEnvI* env) : ZylRttiEnvObjectI(env) {}

 private:
  friend class ZylPlugInManager;
  friend class zyl::detail::Walk<ZylPlugIn>;
  ZylPlugIn* _next = nullptr;
};

/// A plug-in that hears of changes: of all, or of those of what one algorithm has extracted.
class ZYL_EXPORT ZylNotifiedPlugIn : public ZylPlugIn {
  ZYL_TYPE(ZylNotifiedPlugIn, ZylPlugIn)
 public:
  explicit ZylNotifiedPlugIn(ZylEnvI* env, ZylAlgorithmI* algorithm = nullptr)
      : ZylPlugIn(env), _algorithm(algorithm) {}

  /// `object` is null for a change of no single object.
  virtual void notification(const ZylChange& change, const ZylExtractableI* object) = 0;
  /// An algorithm goes. This base does nothing; the manager unties the plug-in itself.
  virtual void removeAlgorithm(ZylAlgorithmI* algorithm);

  ZylAlgorithmI* getAlgorithmI() const noexcept { return _algorithm; }
  /// Ties the plug-in to an algorithm from now on; null lets it hear of all. The end of the
  /// algorithm unties it while it is among those that `addNotified` told of.
  void setAlgorithm(ZylAlgorithmI* algorithm) noexcept { _algorithm = algorithm; }

 private:
  friend class ZylPlugInManager;
  // Whether it hears of changes of `object`: always, unless it is tied to an algorithm that has
  // not extracted it.
  ZYL_LOCAL bool concerns(const ZylExtractableI* object) const;
  ZylAlgorithmI* _algorithm;
};

/// What extends a plug-in; it registers under the same name, before it or after.
class ZYL_EXPORT ZylPlugInAddon : public ZylRttiEnvObjectI {
  ZYL_TYPE(ZylPlugInAddon, ZylRttiEnvObjectI)
 public:
  explicit ZylPlugInAddon(ZylEnvI* env) : ZylRttiEnvObjectI(env) {}
  virtual void plugInAdded(ZylPlugIn* plugIn) = 0;
  virtual void plugInRemoved(ZylPlugIn* plugIn) = 0;

 private:
  friend class ZylPlugInManager;
  friend class zyl::detail::Walk<ZylPlugInAddon>;
  ZylPlugInAddon* _next = nullptr;
};

/// What an environment's optional deleter offers: it governs removals by use counts that it keeps
/// from changes. The library holds no concrete one.
class ZYL_EXPORT ZylBaseDeleterI : public ZylNotifiedPlugIn {
  ZYL_TYPE(ZylBaseDeleterI, ZylNotifiedPlugIn)
 public:
  explicit ZylBaseDeleterI(ZylEnvI* env) : ZylNotifiedPlugIn(env) {}
  /// The object has left all that referred to it.
  virtual void removedFromAll(ZylExtractableI* object) = 0;
  virtual void created(ZylExtractableI* object) = 0;
  virtual void ended(ZylExtractableI* object) = 0;
  virtual void inhibit(long inhibit) = 0;
  virtual void removeAndDelete(ZylExtractableI* object, long flag) = 0;
  virtual void removeAndDelete(ZylExtractableArray objects, long flag) = 0;
  virtual void setVerbosityLevel(long level) = 0;
  /// Whether `child` is counted as a child of `parent`.
  virtual bool isChild(const ZylExtractableI* child, const ZylExtractableI* parent) const = 0;
};

/// The plug-ins and add-ons of an environment, by name. Deletes what is left at its end.
class ZYL_EXPORT ZylPlugInManager {
 public:
  /// Those of one name, newest first.
  struct ZylCell {
    char* _name;
    ZylPlugIn* _plugIns;
    ZylPlugInAddon* _addons;
    ZylCell* _next;
    /// Deletes all of them, and frees the name.
    void end(ZylEnvI* env);
  };

  explicit ZylPlugInManager(ZylEnvI* env) : _env(env) {}
  ~ZylPlugInManager();
  ZylPlugInManager(const ZylPlugInManager&) = delete;
  ZylPlugInManager& operator=(const ZylPlugInManager&) = delete;

  /// Take the plug-in or add-on over, and make counterparts known to each other. Raise
  /// `ZylMemoryException`.
  void add(ZylPlugIn* plugIn, const char* name);
  void add(ZylPlugInAddon* addon, const char* name);
  /// Unlink without deleting, after `plugInRemoved`; nothing for what is not there.
  void remove(ZylPlugIn* plugIn, const char* name);
  void remove(ZylPlugInAddon* addon, const char* name);
  /// Make a plug-in hear of changes, newest first, or no more. Not owned by this.
  void addNotified(ZylNotifiedPlugIn* plugIn);
  void removeNotified(ZylNotifiedPlugIn* plugIn);
  /// Whether a plug-in of exactly this type stands under the name.
  bool isCreated(ZylTypeInfo type, const char* name) const;
  ZylCell* findCell(const char* name) const;
  ZylCell* findOrCreateCell(const char* name);
  bool hasNotified() const noexcept { return _notified != nullptr; }
  /// Tells the plug-ins that the change concerns.
  void apply(const ZylChange& change, const ZylExtractableI* object);
  /// Tells each notified plug-in, and unties those of the algorithm from it.
  void removeAlgorithm(ZylAlgorithmI* algorithm);

 private:
  struct NotifiedCell {
    ZylNotifiedPlugIn* plugIn;
    NotifiedCell* _next;
  };
  template <class T>
  static T** findLink(T** link, const T* object);
  template <class T>
  static void unlink(T** link, zyl::detail::Walk<T>* walks);

  ZylCell* _cells = nullptr;
  ZylEnvI* _env;
  NotifiedCell* _notified = nullptr;
  // The walks under way along chains of each kind, innermost first.
  zyl::detail::Walk<ZylPlugIn>* _plugInWalks = nullptr;
  zyl::detail::Walk<ZylPlugInAddon>* _addonWalks = nullptr;
  zyl::detail::Walk<NotifiedCell>* _notifiedWalks = nullptr;
};

#endif
