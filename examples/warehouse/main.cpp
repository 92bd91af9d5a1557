// Where to open warehouses for Europe's cities?
//
// Each city is served from one warehouse or from several; a warehouse costs a fixed amount, and
// transport costs grow with people and kilometres. The model is solved, then edited while the
// engine keeps it: a site closes, another may be built, a budget is cut. The engine hears of each
// edit and starts from the solution it has.

#include <cmath>
#include <cstdio>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

#include <vorlane/cbc.h>

namespace {

struct City {
  std::string name;
  double latitude;
  double longitude;
  double population;  // thousands
};

std::vector<City> readCities(const char* path) {
  std::vector<City> cities;
  std::ifstream file(path);
  std::string line;
  std::getline(file, line);  // the heading
  while (std::getline(file, line)) {
    std::istringstream fields(line);
    std::string name, country, latitude, longitude, population;
    std::getline(fields, name, ',');
    std::getline(fields, country, ',');
    std::getline(fields, latitude, ',');
    std::getline(fields, longitude, ',');
    std::getline(fields, population, ',');
    cities.push_back({name, std::stod(latitude), std::stod(longitude), std::stod(population)});
  }
  return cities;
}

// Great-circle distance in kilometres.
double distance(const City& a, const City& b) {
  constexpr double Radians = 3.14159265358979323846 / 180.0;
  const double dLat = (b.latitude - a.latitude) * Radians / 2;
  const double dLon = (b.longitude - a.longitude) * Radians / 2;
  const double h = std::sin(dLat) * std::sin(dLat) + std::cos(a.latitude * Radians) *
                                                         std::cos(b.latitude * Radians) *
                                                         std::sin(dLon) * std::sin(dLon);
  return 2 * 6371.0 * std::asin(std::sqrt(h));
}

constexpr double FixedCost = 1500.0;      // of a warehouse, thousands a year
constexpr double TransportCost = 0.0025;  // thousands a year for a thousand people and a km
constexpr double LargeCity = 1000.0;      // a site is a city of this many thousands, or more

double serving(const City& city, const City& site) {
  return TransportCost * city.population * distance(city, site);
}

// Prints the status, the cost, and the warehouses that are open.
void show(const char* title, const ZylCbc& engine, const std::vector<const City*>& sites,
          const ZylBoolVarArray& open) {
  std::cout << title << ": " << engine.getStatus();
  std::printf(", cost %.1f\n  open:", engine.getObjValue());
  for (long s = 0; s < open.getSize(); ++s) {
    if (engine.getIntValue(open[s]) == 1)
      std::printf(" %s", sites[static_cast<std::size_t>(s)]->name.c_str());
  }
  std::printf("\n");
  std::fflush(stdout);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "usage: warehouse CITIES.csv" << std::endl;
    return 2;
  }
  const std::vector<City> cities = readCities(argv[1]);
  if (cities.empty()) {
    std::cerr << "warehouse: no cities in " << argv[1] << std::endl;
    return 2;
  }
  std::vector<const City*> sites;
  for (const City& city : cities) {
    if (city.population >= LargeCity) sites.push_back(&city);
  }
  std::cout << std::unitbuf;

  zyl::Scoped<ZylEnv> env;  // outside, as exceptions show objects of the environment
  try {
    ZylModel model(env, "warehouse");
    ZylBoolVarArray open(env, static_cast<long>(sites.size()), 0L, 1L);
    zyl::Scoped<ZylExpr> cost(env);
    std::vector<ZylRange> served;
    for (long s = 0; s < open.getSize(); ++s) {
      open[s].setName(sites[static_cast<std::size_t>(s)]->name.c_str());
      cost += FixedCost * open[s];
    }
    for (const City& city : cities) {
      // Left to the row alone when it goes, so that a new share below is added in place.
      zyl::Scoped<ZylExpr> shares(env);
      for (long s = 0; s < open.getSize(); ++s) {
        ZylNumVar share(env, 0, 1);
        shares += share;
        cost += serving(city, *sites[static_cast<std::size_t>(s)]) * share;
        model.add(share <= open[s]);
      }
      served.push_back(shares == 1);
      model.add(served.back());
    }
    ZylObjective objective = ZylMinimize(env, cost);
    cost.end();  // as above; it is not needed any more
    model.add(objective);

    ZylCbc engine(model);
    engine.setLogLevel(0);
    engine.solve();
    show("all sites", engine, sites, open);

    // The warehouse in Paris closes.
    long paris = 0;
    while (sites[static_cast<std::size_t>(paris)]->name != "Paris") ++paris;
    open[paris].setMax(0);
    engine.solve();
    show("without Paris", engine, sites, open);

    // Lille may take its place, at a lower cost: a new column in the objective and in each city's
    // row.
    City lille{};
    for (const City& city : cities) {
      if (city.name == "Lille") lille = city;
    }
    ZylBoolVar openLille(env, "Lille");
    open.add(openLille);
    sites.push_back(&lille);
    objective.setLinearCoef(openLille, 0.6 * FixedCost);
    for (std::size_t c = 0; c < cities.size(); ++c) {
      ZylNumVar share(env, 0, 1);
      served[c].setLinearCoef(share, 1.0);
      objective.setLinearCoef(share, serving(cities[c], lille));
      model.add(share <= openLille);
    }
    engine.solve();
    show("Lille instead", engine, sites, open);

    // No more than three warehouses in all.
    model.add(ZylSum(open) <= 3);
    engine.solve();
    show("three at most", engine, sites, open);
  } catch (const ZylException& exception) {
    std::cerr << "warehouse: " << exception << std::endl;
    return 1;
  }
  return 0;
}
