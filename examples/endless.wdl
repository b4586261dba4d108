%MASTERCLOCKMULT = 1;
%SMALLESTUNIT    = 9;
%AUTOASSIGN      = 0;
%DECIMALS        = 0;
%ENDTIME         = 1600;
$tick = 0 1 1 1;
$quarter = 1 1 0 3;
$half = 1 2 0 2;
$most = 1 3 0 1;
CLK { Z In Default None 0 1 50 } =  $tick *10 ## ;
CLKDIV5 { Z Out Default None 0 1 50 } =  $tick *50 ## ;
GRAY[1:0] { Z Out Default None 0 1 50 } = (0 1 1 1 3 1 2 1)*80 ## 
  ;
COUNT[3:0] { Z Out Default None 0 1 50 } = (0 1 1 1 2 1 3 1 4 1
   5 1 6 1 7 1 8 1 9 1)*100 ## ;
PWM { Z Out Default None 0 1 50 } = 0 100( $quarter *40 #2  $half *40 #2 
   $most *40 #2 )## ;
STROBE { Z Out Default None 0 1 50 } = 0 190(1 10 0 90)*2 ## 
  ;
