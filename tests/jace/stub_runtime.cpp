// A Java runtime without Java: answers what the environment tells it, and records each call.
//
// STUB_RUNTIME holds rules, separated by blanks:
//   getCreated=CODE create=CODE attach=CODE getJavaVM=CODE   what these functions return
//   machines=N      machines that exist before one is created
//   missing=NAME    a class or method that cannot be found
//   throws=NAME     a method that throws when it is called
//   null=FUNCTION   a function that answers null
// STUB_RECORD names a file that each call is appended to, and first the directory in which this
// library was loaded. References are counted: `stubLocalRefs` and `stubGlobalRefs` tell how many
// have not been given back.

#include <jni.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <mutex>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace {

// An object, a class (whose text is its name) or a string. They live as long as the process, as
// does a reference to them.
struct Object {
  std::string className;
  std::string text;
  std::vector<Object*> elements = {};
};

struct Method {
  std::string name;
};

std::atomic<int> localRefs = 0;
std::atomic<int> globalRefs = 0;
std::atomic<int> machines = -1;
std::mutex recordLock;
thread_local Object* pending = nullptr;
thread_local bool attached = false;

std::vector<std::string> rules(const std::string& key) {
  const char* text = std::getenv("STUB_RUNTIME");
  std::istringstream stream(text == nullptr ? "" : text);
  std::vector<std::string> values;
  for (std::string rule; stream >> rule;) {
    if (rule.starts_with(key + "=")) values.push_back(rule.substr(key.size() + 1));
  }
  return values;
}

bool hasRule(const std::string& key, const std::string& value) {
  const std::vector<std::string> values = rules(key);
  return std::find(values.begin(), values.end(), value) != values.end();
}

int number(const std::string& key) {
  const std::vector<std::string> values = rules(key);
  return values.empty() ? 0 : std::stoi(values.front());
}

void record(const std::string& line) {
  const char* file = std::getenv("STUB_RECORD");
  if (file == nullptr) return;
  const std::lock_guard<std::mutex> lock(recordLock);
  std::ofstream(file, std::ios::app) << line << '\n';
}

// Keeps each of its kind for ever, where a leak checker sees it.
template <class T>
T* keep(T value) {
  static auto* const all = new std::vector<T*>;
  static std::mutex lock;
  const std::lock_guard<std::mutex> guard(lock);
  all->push_back(new T(std::move(value)));
  return all->back();
}

template <class Reference = jobject>
Reference local(Object* object) {
  if (object != nullptr) ++localRefs;
  return reinterpret_cast<Reference>(object);
}

Object* object(jobject reference) { return reinterpret_cast<Object*>(reference); }

Object* makeClass(const std::string& name) { return keep(Object{"java/lang/Class", name}); }

Object* makeString(const std::string& text) { return keep(Object{"java/lang/String", text}); }

std::nullptr_t raise(const std::string& className, const std::string& message) {
  pending = keep(Object{className, message});
  return nullptr;
}

std::string dotted(std::string name) {
  std::replace(name.begin(), name.end(), '/', '.');
  return name;
}

jclass JNICALL findClass(JNIEnv*, const char* name) {
  record(std::string("FindClass ") + name);
  if (!hasRule("missing", name)) return local<jclass>(makeClass(name));
  return raise("java/lang/NoClassDefFoundError", name);
}

// Whether a method, named by the end of its full name, has this signature in Java.
bool isDeclared(const std::string& method, std::string_view signature) {
  constexpr std::string_view declared[][2] = {{".getClass", "()Ljava/lang/Class;"},
                                              {".getName", "()Ljava/lang/String;"},
                                              {".getSuperclass", "()Ljava/lang/Class;"},
                                              {".toString", "()Ljava/lang/String;"},
                                              {".main", "([Ljava/lang/String;)V"},
                                              {".setRedirectStandardOutput", "(Z)V"},
                                              {".rethrowException", "()V"},
                                              {"ByteArrayOutputStream.<init>", "()V"},
                                              {"PrintStream.<init>", "(Ljava/io/OutputStream;)V"},
                                              {".printStackTrace", "(Ljava/io/PrintStream;)V"}};
  return std::any_of(std::begin(declared), std::end(declared), [&](const auto& row) {
    return method.ends_with(row[0]) && signature == row[1];
  });
}

jmethodID JNICALL getMethod(JNIEnv*, jclass owner, const char* name, const char* signature) {
  const std::string text = object(owner)->text + "." + name;
  if (!hasRule("missing", text) && isDeclared(text, signature)) {
    return reinterpret_cast<jmethodID>(keep(Method{name}));
  }
  return raise("java/lang/NoSuchMethodError", name);
}

// Whether the call throws in place of being made.
bool refuses(jmethodID method) {
  const std::string& name = reinterpret_cast<Method*>(method)->name;
  record("Call " + name);
  if (!hasRule("throws", name)) return false;
  raise("java/lang/IllegalStateException", name);
  return true;
}

jobject JNICALL callObjectMethod(JNIEnv*, jobject target, jmethodID method, va_list) {
  if (refuses(method)) return nullptr;
  const std::string& name = reinterpret_cast<Method*>(method)->name;
  if (hasRule("null", name)) return nullptr;
  const Object& self = *object(target);
  if (name == "getClass") return local(makeClass(self.className));
  if (name == "getName") return local(makeString(dotted(self.text)));
  return local(makeString(dotted(self.className) + ": " + self.text));
}

void JNICALL callVoidMethod(JNIEnv*, jobject target, jmethodID method, va_list arguments) {
  if (refuses(method)) return;
  if (reinterpret_cast<Method*>(method)->name == "rethrowException") {
    raise("demo/InnerException", object(target)->text);
  } else {  // printStackTrace, onto a stream that is told by what it was made on
    object(va_arg(arguments, jobject))->elements[0]->text = "trace of " + object(target)->className;
  }
}

void JNICALL callStaticVoidMethod(JNIEnv*, jclass, jmethodID method, va_list arguments) {
  if (reinterpret_cast<Method*>(method)->name == "main") {
    for (const Object* element : object(va_arg(arguments, jobject))->elements) {
      record("argument " + element->text);
    }
  } else {
    record(va_arg(arguments, int) != 0 ? "flag true" : "flag false");
  }
  refuses(method);
}

jobject JNICALL newObject(JNIEnv*, jclass owner, jmethodID, va_list arguments) {
  Object* made = keep(Object{object(owner)->text, ""});
  record("NewObject " + made->className);
  if (hasRule("throws", made->className)) return raise("java/lang/OutOfMemoryError", "");
  if (made->className == "java/io/PrintStream") {
    made->elements.push_back(object(va_arg(arguments, jobject)));
  }
  return local(made);
}

jobjectArray JNICALL newObjectArray(JNIEnv*, jsize size, jclass, jobject) {
  if (hasRule("null", "NewObjectArray")) return raise("java/lang/OutOfMemoryError", "array");
  Object array{"[Ljava/lang/String;", ""};
  array.elements.resize(static_cast<std::size_t>(size));
  return local<jobjectArray>(keep(array));
}

const char* JNICALL getChars(JNIEnv*, jstring text, jboolean*) {
  if (hasRule("null", "GetStringUTFChars")) {
    return raise("java/lang/OutOfMemoryError", "characters");
  }
  // A copy, so that a caller who does not release it is found out by the leak checker.
  return strdup(object(text)->text.c_str());
}

extern JavaVM machine;
extern JNIEnv environment;

const JNINativeInterface_& functions() {
  static const JNINativeInterface_ table = [] {
    JNINativeInterface_ f = {};
    f.GetVersion = [](JNIEnv*) -> jint { return JNI_VERSION_1_8; };
    f.FindClass = findClass;
    f.GetMethodID = getMethod;
    f.GetStaticMethodID = getMethod;
    f.CallObjectMethodV = callObjectMethod;
    f.CallVoidMethodV = callVoidMethod;
    f.CallStaticVoidMethodV = callStaticVoidMethod;
    f.NewObjectV = newObject;
    f.NewObjectArray = newObjectArray;
    f.SetObjectArrayElement = [](JNIEnv*, jobjectArray array, jsize index, jobject element) {
      object(array)->elements.at(static_cast<std::size_t>(index)) = object(element);
    };
    f.NewStringUTF = [](JNIEnv*, const char* text) { return local<jstring>(makeString(text)); };
    f.GetStringUTFChars = getChars;
    f.ReleaseStringUTFChars = [](JNIEnv*, jstring, const char* characters) {
      std::free(const_cast<char*>(characters));  // NOLINT
    };
    f.GetObjectClass = [](JNIEnv*, jobject target) {
      return local<jclass>(makeClass(object(target)->className));
    };
    f.IsInstanceOf = [](JNIEnv*, jobject target, jclass type) -> jboolean {
      return object(target)->className == object(type)->text;
    };
    f.Throw = [](JNIEnv*, jthrowable exception) {
      pending = object(exception);
      record("Throw " + pending->className);
      return 0;
    };
    f.ThrowNew = [](JNIEnv*, jclass type, const char* message) {
      raise(object(type)->text, message);
      return 0;
    };
    f.ExceptionOccurred = [](JNIEnv*) { return local<jthrowable>(pending); };
    f.ExceptionCheck = [](JNIEnv*) -> jboolean { return pending != nullptr; };
    f.ExceptionClear = [](JNIEnv*) { pending = nullptr; };
    f.ExceptionDescribe = [](JNIEnv*) {
      record("ExceptionDescribe " + (pending == nullptr ? "nothing" : pending->className));
    };
    f.NewGlobalRef = [](JNIEnv*, jobject target) -> jobject {
      if (target == nullptr || hasRule("null", "NewGlobalRef")) return nullptr;
      record("NewGlobalRef " + object(target)->text);
      ++globalRefs;
      return target;
    };
    f.DeleteGlobalRef = [](JNIEnv*, jobject target) {
      record("DeleteGlobalRef " + object(target)->text);
      --globalRefs;
    };
    f.NewLocalRef = [](JNIEnv*, jobject target) {
      return hasRule("null", "NewLocalRef") ? nullptr : local(object(target));
    };
    f.DeleteLocalRef = [](JNIEnv*, jobject target) {
      if (target != nullptr) --localRefs;
    };
    f.GetJavaVM = [](JNIEnv*, JavaVM** vm) {
      *vm = &machine;
      return number("getJavaVM");
    };
    return f;
  }();
  return table;
}

const JNIInvokeInterface_& invokeFunctions() {
  static const JNIInvokeInterface_ table = [] {
    JNIInvokeInterface_ f = {};
    f.AttachCurrentThread = [](JavaVM*, void** env, void*) {
      record("AttachCurrentThread");
      *env = &environment;
      attached = number("attach") == 0;
      return number("attach");
    };
    f.DetachCurrentThread = [](JavaVM*) {
      record("DetachCurrentThread");
      attached = false;
      return 0;
    };
    f.GetEnv = [](JavaVM*, void** env, jint) {
      *env = attached ? &environment : nullptr;
      return attached ? JNI_OK : JNI_EDETACHED;
    };
    return f;
  }();
  return table;
}

JavaVM machine = {&invokeFunctions()};
JNIEnv environment = {&functions()};

int machineCount() {
  int unknown = -1;
  machines.compare_exchange_strong(unknown, number("machines"));
  return machines;
}

}  // namespace

#define STUB_EXPORT extern "C" __attribute__((visibility("default")))

STUB_EXPORT jint JNICALL JNI_CreateJavaVM(JavaVM** vm, void** env, void* arguments) {
  const auto& given = *static_cast<JavaVMInitArgs*>(arguments);
  record("JNI_CreateJavaVM " + std::to_string(given.version) +
         (given.ignoreUnrecognized == JNI_TRUE ? " lenient" : " strict"));
  for (jint i = 0; i < given.nOptions; ++i) {
    record(std::string("option ") + given.options[i].optionString +
           (given.options[i].extraInfo == nullptr ? "" : " with pointer"));
  }
  const int result = number("create");
  if (result != 0) return result;
  machines = 1;
  attached = true;
  *vm = &machine;
  *env = &environment;
  return JNI_OK;
}

STUB_EXPORT jint JNICALL JNI_GetCreatedJavaVMs(JavaVM** vms, jsize size, jsize* count) {
  const int result = number("getCreated");
  if (result != 0) return result;
  *count = machineCount();
  if (*count > 0 && size > 0) *vms = &machine;
  return JNI_OK;
}

__attribute__((constructor)) static void recordLoading() {
  char directory[4096];
  if (getcwd(directory, sizeof directory) != nullptr) record(std::string("loaded in ") + directory);
}

STUB_EXPORT int stubLocalRefs() { return localRefs; }
STUB_EXPORT int stubGlobalRefs() { return globalRefs; }
