// A library with the first of a runtime's two functions only.

extern "C" __attribute__((visibility("default"))) int JNI_CreateJavaVM() { return -1; }
