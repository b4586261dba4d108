%MASTERCLOCKMULT = 1;
%SMALLESTUNIT    = 9;
%AUTOASSIGN      = 0;
%DECIMALS        = 0;
%ENDTIME         = 800;
CLK { Z In Default None 0 1 50 } = (1 10 0 10)## ;
VDD { Z In Drive None 0 1 50 } = 6 40 1 760;
VSS { Z In Drive None 0 1 50 } = 0 800;
PAD { Z Bid Drive None 0 1 50 } = 6 60 7 60 3 100 2 100 5 140
   4 140 7 60 3 60 7 80;
_IRQ { Z In Drive None 0 1 50 } = 3 320 2 280 3 200;
STATE { Z Out Phase None 0 1 50 } = 5 40 0 80(1 60 2 60 3 80 4 60
  )#2  0 160;
READY { Z Out Default None 0 1 50 } = 2 40 1 80(0 200 1 60)#2 
   1 160;
