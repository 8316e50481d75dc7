[MainBand]
Caption=Amateur
Description=Amateur radio bands
[SubBand.0]
Caption=160m
Description=160 metre band
FreqMin=1810000
FreqMax=2000000
[SubBand.1]
Caption=80m
Description=80 metre band
FreqMin=3500000
FreqMax=3800000
[SubBand.2]
Caption=60m
Description=60 metre band
FreqMin=5351500
FreqMax=5366500
[SubBand.3]
Caption=40m
Description=40 metre band
FreqMin=7000000
FreqMax=7200000
[SubBand.4]
Caption=30m
Description=30 metre band
FreqMin=10100000
FreqMax=10150000
[SubBand.5]
Caption=20m
Description=20 metre band
FreqMin=14000000
FreqMax=14350000
[SubBand.6]
Caption=17m
Description=17 metre band
FreqMin=18068000
FreqMax=18168000
[SubBand.7]
Caption=15m
Description=15 metre band
FreqMin=21000000
FreqMax=21450000
[SubBand.8]
Caption=12m
Description=12 metre band
FreqMin=24890000
FreqMax=24990000
[SubBand.9]
Caption=10m
Description=10 metre band
FreqMin=28000000
FreqMax=29700000
