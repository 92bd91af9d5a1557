// Starts a Java machine inside this process and runs the class demo.Greeting in it.

#include <vorlane/bootstrap.h>

int main(int argc, char** argv) {
  parseArgumentsAndExec(argc, argv, "Greeting", "demo/Greeting", /*redirectJavaOutput=*/false,
                        /*requireGenerationalGC=*/false);
}
