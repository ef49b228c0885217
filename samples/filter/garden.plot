# A garden, of which we see what lies within the fence.
PEN 120 90 60 0.6
LINE 0 0 40 0 40 30 0 30 0 0           # the fence
CLIP 0 0 40 0 40 30 0 30

PEN 40 110 40 0.4
FILL 190 225 180
AREA 4 4 30 4 17 26 / 13 8 21 8 17 16  # a lawn with a bed left out
FILL 240 170 170
DISC 17 11 2                           # the bed's rose
FILL 170 205 240
DISC 38 25 8                           # the neighbour's pond reaches over

PEN 150 150 150 1
FILL
LINE -5 20 10 14 25 24 50 8            # the path goes on outside
