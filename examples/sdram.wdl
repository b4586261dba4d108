%MASTERCLOCKMULT = 1;
%SMALLESTUNIT    = 9;
%AUTOASSIGN      = 0;
%DECIMALS        = 0;
%ENDTIME         = 800;
$refresh = 0 1 1 3;
CLK { Z In Default None 0 1 50 } = (1 10 0 10)## ;
CKE { Z Out Default NRZ 0 20 50 } = 0 3 1 37;
_CS { Z Out Default NRZ 0 20 50 } = 1 6 0 28 1 6;
_RAS { Z Out Default NRZ 0 20 50 } = 1 6 0 1 1 1 $refresh #2 
   0 1 1 1 0 1 1 14 0 1 1 6;
_CAS { Z Out Default NRZ 0 20 50 } = 1 8 $refresh #2  0 1 1 3
   0 1 1 4 0 1 1 14;
_WE { Z Out Default NRZ 0 20 50 } = 1 6 0 1 1 9 0 1 1 3 0 1 1 12
   0 1 1 6;
BA[1:0] { Z Out Default NRZ 0 20 50 } = 0 18 1 16 0 6;
A[12:0] { Z Out Default NRZ 0 20 50 } = 0 6 400 1 0 9 22 1 0 1
   1a5 1 0 1 10 1 0 4 10 1 0 7 400 1 0 6;
DQM[1:0] { Z Out Default NRZ 0 20 50 } = 3 20 0 11 3 9;
DQ[15:0] { Z Bid Default NRZ 0 20 50 } = 0 20 a5a5 1 5a5a 1 1234 1
   5678 1 0 3 a5a5 1 5a5a 1 1234 1 5678 1 0 9;
DQOE { Z Out Default NRZ 0 20 50 } = 0 20 1 4 0 16;
_CS,_RAS,_CAS,_WE;
