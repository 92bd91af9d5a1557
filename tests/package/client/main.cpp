// A client of the installed package.

#include <iostream>

#include <vorlane/vorlane.h>

int main() {
  ZylEnv env;
  ZylModel model(env, "client");
  ZylNumVar x(env, 0, 10, "x");
  model.add(2 * x + 1 <= 5);
  std::cout << model;
  env.end();
  return 0;
}
