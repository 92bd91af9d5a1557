* A day's food for one adult at the least cost: grams of each food in hundreds.
* Energy in kcal, protein, fat and fibre in g, calcium in mg, vitamin C in mg, for 100 g.
NAME          BLEND
ROWS
 N  COST
 G  ENERGY
 L  ENERGYMX
 G  PROTEIN
 L  FAT
 G  FIBRE
 G  CALCIUM
 G  VITC
COLUMNS
    OATS      COST      0.18   ENERGY    372
    OATS      ENERGYMX  372    PROTEIN   13.5
    OATS      FAT       7.0    FIBRE     10
    OATS      CALCIUM   43
    BREAD     COST      0.32   ENERGY    235
    BREAD     ENERGYMX  235    PROTEIN   8.5
    BREAD     FAT       1.7    FIBRE     6.5
    BREAD     CALCIUM   30
    MILK      COST      0.11   ENERGY    64
    MILK      ENERGYMX  64     PROTEIN   3.4
    MILK      FAT       3.6    CALCIUM   120
    MILK      VITC      1.0
    LENTILS   COST      0.35   ENERGY    336
    LENTILS   ENERGYMX  336    PROTEIN   24
    LENTILS   FAT       1.5    FIBRE     11
    LENTILS   CALCIUM   56     VITC      4.5
    POTATO    COST      0.12   ENERGY    77
    POTATO    ENERGYMX  77     PROTEIN   2.0
    POTATO    FAT       0.1    FIBRE     2.1
    POTATO    CALCIUM   12     VITC      17
    CABBAGE   COST      0.15   ENERGY    25
    CABBAGE   ENERGYMX  25     PROTEIN   1.3
    CABBAGE   FAT       0.1    FIBRE     2.5
    CABBAGE   CALCIUM   40     VITC      37
    CHEESE    COST      0.85   ENERGY    356
    CHEESE    ENERGYMX  356    PROTEIN   25
    CHEESE    FAT       27     CALCIUM   700
    EGGS      COST      0.45   ENERGY    143
    EGGS      ENERGYMX  143    PROTEIN   12.6
    EGGS      FAT       9.5    CALCIUM   56
    APPLE     COST      0.22   ENERGY    52
    APPLE     ENERGYMX  52     PROTEIN   0.3
    APPLE     FAT       0.2    FIBRE     2.4
    APPLE     CALCIUM   6      VITC      4.6
    OIL       COST      0.60   ENERGY    884
    OIL       ENERGYMX  884    FAT       100
RHS
    RHS       ENERGY    2200   ENERGYMX  2500
    RHS       PROTEIN   60     FAT       80
    RHS       FIBRE     30     CALCIUM   1000
    RHS       VITC      100
BOUNDS
 UP BND       OATS      1.5
 UP BND       BREAD     3
 UP BND       MILK      6
 UP BND       LENTILS   1
 UP BND       POTATO    4
 LO BND       APPLE     1
 LO BND       OIL       0.1
ENDATA
