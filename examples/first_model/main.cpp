// The model of docs/getting-started.md.

#include <iostream>

#include <vorlane/cbc.h>

int main() {
  zyl::Scoped<ZylEnv> env;  // ends at the end of its scope
  ZylModel model(env, "bakery");

  ZylNumVar bread(env, 0, ZylInfinity, "bread");
  ZylIntVar cakes(env, 0, 20, "cakes");
  ZylRange flour = 0.5 * bread + 0.8 * cakes <= 40;
  flour.setName("flour");
  model.add(flour);
  model.add(bread + 3 * cakes <= 90);
  ZylObjective profit = ZylMaximize(env, 2 * bread + 9 * cakes, "profit");
  model.add(profit);
  std::cout << model;

  ZylCbc engine(model);
  engine.setLogLevel(0);
  engine.solve();
  std::cout << engine.getStatus() << " " << engine.getObjValue() << ": " << engine.getValue(bread)
            << " of bread, " << engine.getIntValue(cakes) << " cakes\n";

  flour.setUB(30);
  profit.setLinearCoef(cakes, 5);
  engine.solve();
  std::cout << engine.getObjValue() << " with less flour and cheaper cakes\n";
  return 0;
}
