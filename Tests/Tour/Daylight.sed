# What the tour makes of Daylight.sketch.
s/^canvas 760 560$/canvas 780 560/
$a\
rectangle 477 40 580 110 color=#C0392B width=3 fill=#7FB2F0\
ellipse 580 440 620 480 color=#FFFFFF width=3 fill=#7FB2F0\
polyline 640 480 655 450 670 480 685 450 color=#FFFFFF width=3\
text 484 60 "Sketch\\ntour" size=24 color=#FFFFFF
