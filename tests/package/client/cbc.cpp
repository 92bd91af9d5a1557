// A client of the installed engine.

#include <iostream>

#include <vorlane/cbc.h>

int main() {
  ZylEnv env;
  ZylModel model(env);
  ZylNumVar x(env, 0, 10);
  model.add(ZylMaximize(env, 2 * x + 1));
  ZylCbc engine(model);
  engine.setLogLevel(0);
  engine.solve();
  std::cout << engine.getStatus() << " " << engine.getObjValue() << std::endl;
  env.end();
  return 0;
}
