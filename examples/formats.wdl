%MASTERCLOCKMULT = 40;
%SMALLESTUNIT    = 9;
%AUTOASSIGN      = 1;
%DECIMALS        = 0;
%ENDTIME         = 800;
$burst = 1 80 0 40 1 120;
MCLK { Z In Default None 0 1 50 } = (1 20 0 20)## ;
D.NRZ { A Out Default NRZ 0 1 50 } = 0 2 1 3 0 1 1 4 0 2 1 1 0 3
   1 2 0 2;
D.RZ { A Out Default RZ 0 1 50 } = 0 2 1 3 0 1 1 4 0 2 1 1 0 3
   1 2 0 2;
D.R1 { A Out Default R1 0 1 50 } = 0 2 1 3 0 1 1 4 0 2 1 1 0 3
   1 2 0 2;
D.RC { A Out Default RC 0 1 50 } = 0 2 1 3 0 1 1 4 0 2 1 1 0 3
   1 2 0 2;
NARROW { A Out Default RZ 0 2 25 } = 0 1 1 3 0 2 1 3 0 1;
DELAYED { A Out Default R1 10 1 40 } = 1 3 0 4 1 6 0 6;
BUS[7:0] { A Out Default RC 0 4 50 } = a5 1 3c 2 ff 1 0 1;
FORCED { Z Out Default None 0 40 50 } = 0 80 $burst @RZ  0 80
   $burst @NRZ  0 160;
