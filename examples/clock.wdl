%MASTERCLOCKMULT = 1;
%SMALLESTUNIT    = 9;
%AUTOASSIGN      = 0;
%DECIMALS        = 0;
%ENDTIME         = 800;
CLK { Z In Default None 0 1 50 } = (0 10 1 10)## ;
CLKDIV2 { Z In Default None 0 1 50 } = (0 20 1 20)## ;
_RESET { Z In Default None 0 1 50 } = 0 90 1 710;
LOCKED { Z Out Default None 0 1 50 } = 2 40 0 70 1 690;
ENABLE { Z In Default None 0 1 50 } = 0 130(1 20 0 60)#8  0 30
  ;
LOAD { Z In Default None 0 1 50 } = 0 150 1 20 0 310 1 20 0 300
  ;
COUNT[3:0] { Z Out Default None 0 1 50 } = 0 170 9 40 a 80 b 80
   c 80 d 50 3 30 4 80 5 80 6 80 7 30;
PRESET[3:0] { Z In Default None 0 1 50 } = 9 460 3 340;
DONE { Z Out Default None 0 1 50 } = 2 90 0 410 1 20 0 280;
