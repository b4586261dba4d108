%MASTERCLOCKMULT = 1;
%SMALLESTUNIT    = 6;
%AUTOASSIGN      = 0;
%DECIMALS        = 2;
%ENDTIME         = 51200;
$idle = 1 2;
$K = 0 1 1 2 0 1 1 1 0 2 1 1 0 1 1 1;
$E = 0 1 1 1 0 1 1 1 0 3 1 1 0 1 1 1;
$L = 0 3 1 2 0 2 1 1 0 1 1 1;
$V = 0 2 1 2 0 1 1 1 0 1 1 1 0 1 1 1;
$message =  $K  1 1 $E  1 1 $L  1 1 $V ;
BAUD { Z Test Default None 0 1 50 } = (1 434 0 434)## ;
TXD { Z Out Default None 0 1 50 } =  $idle *868  $message *868 
   $idle *6070 ;
TXDATA[7:0] { Z In Default None 0 1 50 } = 0 868 4b 9548 45 9548
   4c 9548 56 9548 0 12140;
TXSTART { Z In Default None 0 1 50 } = 0 868(1 868 0 8680)#4 
   0 12140;
TXBUSY { Z Out Default None 0 1 50 } = 0 1736(1 8680 0 868)#4 
   0 11272;
_RTS { Z Out Default None 0 1 50 } = 1 1302 0 38626 1 11272;
