// A client of the JNI binding layer, which brings jni.h along.

#include <vorlane/jace.h>

int main() { return static_cast<int>(jace::OptionList().size()) + JNI_FALSE; }
