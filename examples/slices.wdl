%MASTERCLOCKMULT = 1;
%SMALLESTUNIT    = 9;
%AUTOASSIGN      = 0;
%DECIMALS        = 0;
%ENDTIME         = 800;
DATA[15:0] { Z Bid Default None 0 1 50 } = 0 50 1234 100 8001 100
   a5f0 150 ff 100 ff00 100 7ffe 100 0 100;
FLAG[3] { Z Out Default None 0 1 50 } = 0 150 1 250 0 200 1 200
  ;
FLAG[2] { Z Out Default None 0 1 50 } = 0 50 1 150 0 300 1 100
   0 200;
FLAG[1] { Z Out Default None 0 1 50 } = (0 50 1 50)#8 ;
FLAG[0] { Z Out Default None 0 1 50 } = 1 400 0 400;
DATA[15:8];
DATA[7:0];
DATA[15];
DATA[0];
FLAG[3:0];
DATA[15],FLAG[3];
